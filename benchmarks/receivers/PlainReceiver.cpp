// SPDX-License-Identifier: BSD-3-Clause
#include <arv.h>

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Object = std::unique_ptr<void, decltype(&g_object_unref)>;

struct Options {
    std::vector<std::string> cameras;
    double seconds = 3;
    int packetSize = 0;
    bool packetSocket = true;
    bool resend = false;
};

Options parse(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--seconds" && i + 1 < count)
            options.seconds = std::atof(arguments[++i]);
        else if (argument == "--packet-size" && i + 1 < count)
            options.packetSize = std::atoi(arguments[++i]);
        else if (argument == "--socket")
            options.packetSocket = false;
        else if (argument == "--resend")
            options.resend = true;
        else
            options.cameras.push_back(argument);
    }
    return options;
}

/// One camera, from opening to closing, as a program on Aravis alone would receive from it.
class Receiver {
public:
    Receiver(const std::string& address, const Options& options)
        : m_camera(arv_camera_new(address.c_str(), &m_error), g_object_unref) {
        if (m_error != nullptr)
            return;
        arv_camera_gv_set_stream_options(
            camera(), options.packetSocket ? ARV_GV_STREAM_OPTION_NONE
                                           : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
        if (options.packetSize != 0)
            arv_camera_gv_set_packet_size(camera(), options.packetSize, nullptr);
        m_payload = arv_camera_get_payload(camera(), nullptr);
        m_stream.reset(arv_camera_create_stream(camera(), nullptr, nullptr, &m_error));
        if (m_error != nullptr)
            return;
        g_object_set(stream(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED,
                     "socket-buffer-size", 32 << 20, "packet-resend",
                     options.resend ? ARV_GV_STREAM_PACKET_RESEND_ALWAYS
                                    : ARV_GV_STREAM_PACKET_RESEND_NEVER,
                     nullptr);
        for (int i = 0; i < 5; ++i)
            arv_stream_push_buffer(stream(), arv_buffer_new_allocate(m_payload));
        arv_camera_start_acquisition(camera(), &m_error);
    }

    bool failed() const { return m_error != nullptr; }
    const char* message() const { return m_error->message; }

    void receive(const std::atomic<bool>& end) {
        while (!end) {
            ArvBuffer* const buffer = arv_stream_timeout_pop_buffer(stream(), 100000);
            if (buffer == nullptr)
                continue;
            const guint64 id = arv_buffer_get_frame_id(buffer);
            ++(arv_buffer_get_status(buffer) == ARV_BUFFER_STATUS_SUCCESS ? m_complete
                                                                          : m_incomplete);
            m_lost += m_lastId != 0 && id > m_lastId + 1 ? id - m_lastId - 1 : 0;
            m_lastId = id;
            arv_stream_push_buffer(stream(), buffer);
        }
        arv_camera_stop_acquisition(camera(), nullptr);
    }

    guint64 complete() const { return m_complete; }
    guint64 incomplete() const { return m_incomplete; }
    guint64 lost() const { return m_lost; }
    double megabytes() const { return static_cast<double>(m_complete * m_payload) / 1e6; }

private:
    ArvCamera* camera() const { return static_cast<ArvCamera*>(m_camera.get()); }
    ArvStream* stream() const { return static_cast<ArvStream*>(m_stream.get()); }

    GError* m_error = nullptr;
    Object m_camera;
    Object m_stream{nullptr, g_object_unref};
    guint m_payload = 0;
    guint64 m_complete = 0;
    guint64 m_incomplete = 0;
    guint64 m_lost = 0;
    guint64 m_lastId = 0;
};

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

/// Receives from cameras with Aravis and nothing else, for comparison:
/// plain-receiver [--seconds N] [--packet-size N] [--socket] [--resend] ADDRESS...
int main(int count, char** arguments) {
    const Options options = parse(count, arguments);
    std::vector<std::unique_ptr<Receiver>> receivers;
    for (const std::string& address : options.cameras) {
        receivers.push_back(std::make_unique<Receiver>(address, options));
        if (receivers.back()->failed()) {
            std::fprintf(stderr, "%s: %s\n", address.c_str(), receivers.back()->message());
            return 1;
        }
    }
    std::atomic<bool> end = false;
    std::vector<std::thread> threads;
    const double processorBefore = processorSeconds();
    for (const auto& receiver : receivers)
        threads.emplace_back([&receiver, &end] { receiver->receive(end); });
    std::this_thread::sleep_for(std::chrono::duration<double>(options.seconds));
    end = true;
    for (std::thread& thread : threads)
        thread.join();
    const double processor = processorSeconds() - processorBefore;
    double megabytes = 0;
    for (std::size_t i = 0; i < receivers.size(); ++i) {
        const Receiver& receiver = *receivers[i];
        megabytes += receiver.megabytes();
        std::printf("%s complete %llu incomplete %llu lost %llu MB/s %.1f seconds %.1f\n",
                    options.cameras[i].c_str(),
                    static_cast<unsigned long long>(receiver.complete()),
                    static_cast<unsigned long long>(receiver.incomplete()),
                    static_cast<unsigned long long>(receiver.lost()),
                    receiver.megabytes() / options.seconds, options.seconds);
    }
    std::printf("total MB/s %.1f, processor ms/MB %.3f\n", megabytes / options.seconds,
                processor * 1000 / megabytes);
}
