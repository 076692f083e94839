// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ViewerWindow.h"

#include "OrvCPP/OrvSystem.h"
#include "features/FeatureController.h"
#include "plugin/SpanletInterface.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/RealCameras.h"
#include "viewer/CameraDelegate.h"
#include "viewer/CameraListWatcher.h"
#include "viewer/CameraModel.h"
#include "viewer/ImageView.h"
#include "viewer/LinkSpeed.h"
#include "viewer/LossWatch.h"
#include "viewer/StreamCounters.h"
#include "viewer/ThroughputDock.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace viewer {

namespace {

constexpr int rateInterval = 1000;
constexpr int throughputInterval = 500;
/// Lost frames are looked for at each second rate.
constexpr int ratesPerLook = 2;
constexpr int labelMargin = 4;
constexpr int messageTime = 10000;
/// Width of the list of cameras, in characters.
constexpr int listCharacters = 48;
/// The window fits on a screen of 1280 x 720 at this resolution, with its frame and a task bar.
constexpr QSize largestUsualSize(1240, 640);
constexpr int usualResolution = 96;

const auto geometryKey = QStringLiteral("window/geometry");
const auto stateKey = QStringLiteral("window/state");
const auto splitterKey = QStringLiteral("window/splitter");

/// A warning below the list, hidden while it is empty.
void prepareWarning(QLabel& warning, const QString& name) {
    warning.setObjectName(name);
    warning.setTextFormat(Qt::PlainText);
    warning.setWordWrap(true);
    // It names a command to be copied.
    warning.setTextInteractionFlags(Qt::TextSelectableByMouse);
    warning.hide();
}

bool meansInUse(OrvErrorType error) {
    return error == OrvErrorInvalidAccess || error == OrvErrorInUse || error == OrvErrorBusy;
}

} // namespace

ViewerWindow::ViewerWindow(OrvCPP::OrvSystem& system, const QString& pluginFolder,
                           session::StreamingLimits limits, QSettings* settings)
    : m_system(system), m_loader(pluginFolder), m_streamingLimits(std::move(limits)),
      m_watcher(std::make_shared<CameraListWatcher>()), m_model(new CameraModel(this)),
      m_list(new QListView(this)), m_view(new ImageView(this)),
      m_automaticPacketSize(new QCheckBox(tr("Automatic packet size"), this)),
      m_cameraCount(new QLabel(this)), m_streamingWarning(new QLabel(this)),
      m_lossNotice(new QLabel(this)), m_formatLabel(new QLabel(this)),
      m_rateLabel(new QLabel(this)), m_splitter(new QSplitter(this)),
      m_throughput(
          new ThroughputDock([this](const QString& name) { return linkSpeed(name); }, this)),
      m_settings(settings) {
    setWindowTitle(tr("Camera Viewer"));
    m_splitter->addWidget(buildCameraPanel());
    m_splitter->addWidget(m_view);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);
    setCentralWidget(m_splitter);
    buildThroughput();
    buildMenus();
    buildStatusBar();
    restorePlace();

    connect(&m_live, &LiveCamera::imageReady, this,
            [this](const QImage& image, const QString& pixelFormat) {
                m_view->showImage(image);
                m_formatLabel->setText(QStringLiteral("%1 \u00d7 %2  %3")
                                           .arg(image.width())
                                           .arg(image.height())
                                           .arg(pixelFormat));
            });
    connect(&m_live, &LiveCamera::imageNotShown, this, [this](const QString& pixelFormat) {
        m_view->showMessage(tr("Images cannot be shown"),
                            tr("The camera sends the pixel format %1.").arg(pixelFormat));
    });
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { showCamera(current.row()); });
    connect(m_watcher.get(), &CameraListWatcher::changed, this, &ViewerWindow::refreshCameras,
            Qt::QueuedConnection);
    m_system.RegisterCameraListObserver(m_watcher);
    refreshCameras();
}

ViewerWindow::~ViewerWindow() {
    m_system.UnregisterCameraListObserver(m_watcher);
}

void ViewerWindow::buildMenus() {
    QMenu* cameras = menuBar()->addMenu(tr("&Cameras"));
    cameras->addAction(style()->standardIcon(QStyle::SP_BrowserReload), tr("&Refresh"), this,
                       &ViewerWindow::refreshCameras, QKeySequence(QKeySequence::Refresh));
    cameras->addSeparator();
    QAction* quit = cameras->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* throughput = m_throughput->toggleViewAction();
    throughput->setText(tr("&Throughput"));
    throughput->setShortcut(QKeySequence(tr("Ctrl+T")));
    view->addAction(throughput);
    view->addAction(&m_throughput->saveAction());

    QMenu* tools = menuBar()->addMenu(tr("&Tools"));
    QAction* spanlet = tools->addAction(tr("&Spanlet..."), this, [this] {
        const QString error = openSpanlet();
        if (!error.isEmpty())
            QMessageBox::warning(this, tr("Spanlet"), error);
    });
    spanlet->setObjectName(QStringLiteral("actionSpanlet"));
    spanlet->setShortcut(QKeySequence(tr("Ctrl+B")));
    spanlet->setStatusTip(tr("Manage the bandwidth of all cameras"));
}

QWidget* ViewerWindow::buildCameraPanel() {
    m_list->setObjectName(QStringLiteral("listCameras"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(new CameraDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_automaticPacketSize->setObjectName(QStringLiteral("checkAutomaticPacketSize"));
    m_automaticPacketSize->setToolTip(
        tr("Let GigE cameras negotiate their largest packet size before they stream"));

    prepareWarning(*m_streamingWarning, QStringLiteral("labelStreamingWarning"));
    prepareWarning(*m_lossNotice, QStringLiteral("labelLostFrames"));
    m_lossNotice->setAccessibleName(tr("Lost frames"));

    auto* refresh = new QToolButton(this);
    refresh->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    refresh->setAutoRaise(true);
    refresh->setToolTip(tr("Look for cameras again"));
    connect(refresh, &QToolButton::clicked, this, &ViewerWindow::refreshCameras);
    auto* header = new QHBoxLayout;
    header->addWidget(m_cameraCount);
    header->addStretch();
    header->addWidget(refresh);

    auto* panel = new QWidget(this);
    auto* layout = new QVBoxLayout(panel);
    layout->addLayout(header);
    layout->addWidget(m_list);
    layout->addWidget(m_automaticPacketSize);
    layout->addWidget(m_streamingWarning);
    layout->addWidget(m_lossNotice);
    return panel;
}

void ViewerWindow::buildStatusBar() {
    m_formatLabel->setMargin(labelMargin);
    m_rateLabel->setMargin(labelMargin);
    m_rateLabel->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000.0 fps")) +
                                 2 * labelMargin);
    m_rateLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_rateLabel->setObjectName(QStringLiteral("labelFrameRate"));
    statusBar()->addPermanentWidget(m_formatLabel);
    statusBar()->addPermanentWidget(m_rateLabel);
    auto* timer = new QTimer(this);
    timer->setObjectName(QStringLiteral("timerFigures"));
    connect(timer, &QTimer::timeout, this, &ViewerWindow::updateFigures);
    timer->start(rateInterval);
}

void ViewerWindow::buildThroughput() {
    addDockWidget(Qt::BottomDockWidgetArea, m_throughput);
    auto* timer = new QTimer(this);
    timer->setObjectName(QStringLiteral("timerThroughput"));
    connect(timer, &QTimer::timeout, this, &ViewerWindow::sampleThroughput);
    timer->start(throughputInterval);
}

void ViewerWindow::restorePlace() {
    const int listWidth = listCharacters * fontMetrics().averageCharWidth();
    m_splitter->setSizes({listWidth, 2 * listWidth});
    const QSize largest = largestUsualSize * logicalDpiX() / usualResolution;
    resize(QSize(10 * listWidth / 3, 2 * listWidth)
               .boundedTo(largest)
               .boundedTo(screen()->availableSize()));
    if (m_settings == nullptr)
        return;
    // Moves the window onto a screen when that of its place no longer exists.
    restoreGeometry(m_settings->value(geometryKey).toByteArray());
    restoreState(m_settings->value(stateKey).toByteArray());
    m_splitter->restoreState(m_settings->value(splitterKey).toByteArray());
}

void ViewerWindow::closeEvent(QCloseEvent* event) {
    if (m_settings != nullptr) {
        m_settings->setValue(geometryKey, saveGeometry());
        m_settings->setValue(stateKey, saveState());
        m_settings->setValue(splitterKey, m_splitter->saveState());
    }
    QMainWindow::closeEvent(event);
}

QString ViewerWindow::openSpanlet() {
    if (m_isHandedOver)
        return {};
    SpanletInterface* spanlet = m_loader.load();
    if (spanlet == nullptr)
        return m_loader.error();
    releaseCamera();
    m_view->showMessage(tr("Spanlet is open"),
                        tr("The live image returns when its window is closed."));
    m_isHandedOver = true;
    const int flag = spanlet->runDialog(m_system, m_automaticPacketSize->isChecked());
    m_isHandedOver = false;
    m_automaticPacketSize->setChecked(flag != 0);
    refreshCameras();
    showCamera(m_list->currentIndex().row());
    return {};
}

void ViewerWindow::refreshCameras() {
    // Spanlet is open and opens cameras, which changes the list: the viewer must not react.
    if (m_isHandedOver)
        return;
    m_watcher->acknowledge();
    const CameraEntry before = currentCamera();
    const bool hadCameras = m_model->rowCount() > 0;
    takeOver(findCameras(m_system));
    showStreamingLimits();
    if (!m_liveId.isEmpty() && m_model->rowOf(m_liveId) < 0) {
        m_disconnectedId = m_liveId;
        m_disconnectedName = before.name;
        releaseCamera();
        statusBar()->showMessage(tr("%1 was disconnected.").arg(before.name), messageTime);
    }

    // The first list selects a camera to show. Later the user does.
    const int row = hadCameras ? m_model->rowOf(before.id) : firstAvailableRow();
    m_list->setCurrentIndex(m_model->index(row));
    const bool wasBarred =
        before.access == CameraAccess::InUse || before.access == CameraAccess::NoAnswer;
    const bool isFreeNow = wasBarred && currentCamera().access == CameraAccess::Available;
    if (row < 0 || isFreeNow)
        showCamera(row);
}

void ViewerWindow::takeOver(std::vector<CameraEntry> cameras) {
    for (CameraEntry& entry : cameras) {
        // Unavailable only because the viewer has it open.
        if (entry.id == m_liveId)
            entry.access = CameraAccess::Live;
    }
    m_model->setCameras(std::move(cameras));
    const int count = m_model->rowCount();
    m_cameraCount->setText(count == 1 ? tr("1 camera") : tr("%1 cameras").arg(count));
}

void ViewerWindow::showStreamingLimits() {
    QStringList warnings;
    for (const std::string& warning : m_streamingLimits.check(m_system))
        warnings.append(QString::fromStdString(warning));
    m_streamingWarning->setText(warnings.join(QStringLiteral("\n\n")));
    m_streamingWarning->setVisible(!warnings.isEmpty());
}

CameraEntry ViewerWindow::currentCamera() const {
    const QModelIndex current = m_list->currentIndex();
    return current.isValid() ? m_model->cameras()[static_cast<std::size_t>(current.row())]
                             : CameraEntry{};
}

int ViewerWindow::firstAvailableRow() const {
    const auto& cameras = m_model->cameras();
    const auto found = std::find_if(cameras.begin(), cameras.end(), [](const CameraEntry& entry) {
        return entry.access == CameraAccess::Available;
    });
    return found == cameras.end() ? -1 : static_cast<int>(found - cameras.begin());
}

void ViewerWindow::showCamera(int row) {
    if (row < 0) {
        releaseCamera();
        showNoCamera();
        return;
    }
    const CameraEntry entry = m_model->cameras()[static_cast<std::size_t>(row)];
    if (entry.id == m_liveId)
        return;
    releaseCamera();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const OrvErrorType result = m_live.start(entry.camera, entry.type);
    QGuiApplication::restoreOverrideCursor();
    if (result != OrvErrorSuccess) {
        if (meansInUse(result))
            m_model->setAccess(row, CameraAccess::InUse);
        else if (result == OrvErrorNotFound)
            m_model->setAccess(row, CameraAccess::NoAnswer);
        showFailure(entry.name, result);
        return;
    }
    m_liveId = entry.id;
    m_disconnectedId.clear();
    watchLosses(entry);
    m_model->setAccess(row, CameraAccess::Live);
    m_view->showMessage(entry.name, tr("Waiting for the first image. A camera that waits for a "
                                       "trigger sends one with its first trigger."));
}

void ViewerWindow::releaseCamera() {
    m_losses.reset();
    showLosses({});
    m_live.stop();
    m_model->setAccess(m_model->rowOf(m_liveId), CameraAccess::Available);
    m_liveId.clear();
    sampleThroughput();
    m_framesAtLastRate = 0;
    m_sinceLastRate.restart();
    m_formatLabel->clear();
    m_rateLabel->clear();
}

void ViewerWindow::showFailure(const QString& name, OrvErrorType error) {
    if (meansInUse(error)) {
        m_view->showMessage(
            tr("In use by another application"),
            tr("%1 can be shown when the other application has released it.").arg(name));
    } else if (error == OrvErrorNotFound) {
        m_view->showMessage(tr("The camera does not answer"),
                            tr("Check the cable of %1, its power, and whether its network address "
                               "can be reached from this computer.")
                                .arg(name));
    } else {
        m_view->showMessage(tr("The camera cannot be opened"),
                            tr("%1 answers error %2 of the camera SDK.").arg(name).arg(error));
    }
}

void ViewerWindow::showNoCamera() {
    if (!m_disconnectedId.isEmpty() && m_model->rowOf(m_disconnectedId) < 0) {
        m_view->showMessage(
            tr("Disconnected"),
            tr("%1 was disconnected. Check its cable and its power.").arg(m_disconnectedName));
    } else if (m_model->rowCount() == 0) {
        m_view->showMessage(tr("No cameras found"),
                            tr("A camera appears here as soon as it is connected."));
    } else {
        m_view->showMessage(tr("No camera selected"),
                            tr("Select a camera on the left to see its live image."));
    }
}

void ViewerWindow::watchLosses(const CameraEntry& entry) {
    const std::string id = entry.id.toStdString();
    ObservedCamera camera;
    camera.id = id;
    camera.isUsb = entry.type == OrvTransportLayerTypeU3V;
    camera.features =
        std::make_shared<FeatureController>(std::make_shared<OrvCameraWrapper>(entry.camera), id);
    camera.frames = [this] {
        return m_live.frameStatistics();
    };
    const QString& interface =
        entry.interfaceId.isEmpty() ? entry.interfaceName : entry.interfaceId;
    m_losses = std::make_unique<LossWatch>(interface.toStdString(), std::move(camera),
                                           simulatesAll(m_system));
    m_ratesUntilLook = ratesPerLook;
}

void ViewerWindow::showLosses(const QString& text) {
    m_lossNotice->setVisible(!text.isEmpty());
    m_lossNotice->setAccessibleDescription(text);
    // A new text would end the selection of a command to be copied.
    if (text.isEmpty() || !m_lossNotice->hasSelectedText())
        m_lossNotice->setText(text);
}

void ViewerWindow::updateFigures() {
    if (!m_live.isRunning())
        return;
    updateFrameRate();
    if (--m_ratesUntilLook > 0)
        return;
    m_ratesUntilLook = ratesPerLook;
    showLosses(m_losses->look());
}

void ViewerWindow::updateFrameRate() {
    const std::uint64_t frames = m_live.frameStatistics().receivedFrames;
    const qint64 milliseconds = m_sinceLastRate.restart();
    if (milliseconds > 0) {
        const double rate = static_cast<double>(frames - m_framesAtLastRate) * 1000.0 /
                            static_cast<double>(milliseconds);
        m_rateLabel->setText(tr("%L1 frames/s").arg(rate, 0, 'f', 1));
    }
    m_framesAtLastRate = frames;
}

void ViewerWindow::sampleThroughput() {
    std::vector<CountedCamera> cameras;
    for (const CameraEntry& entry : m_model->cameras()) {
        if (const auto counters = streamCounters(entry))
            cameras.push_back({entry.id, entry.name, entry.interfaceName, *counters});
    }
    m_throughput->addSample(cameras);
}

std::optional<StreamCounters> ViewerWindow::streamCounters(const CameraEntry& entry) const {
    if (m_isHandedOver)
        return readStreamCounters(*entry.camera);
    if (entry.id != m_liveId)
        return std::nullopt;
    const FrameStatistics frames = m_live.frameStatistics();
    // Negative while the camera numbers frames in another order.
    const auto lost = static_cast<std::uint64_t>(std::max<std::int64_t>(frames.lostFrames, 0));
    return StreamCounters{frames.payloadBytes, lost + frames.incompleteFrames};
}

std::optional<double> ViewerWindow::linkSpeed(const QString& interfaceName) const {
    for (const CameraEntry& entry : m_model->cameras()) {
        std::shared_ptr<OrvCPP::Interface> interface;
        if (entry.interfaceName == interfaceName &&
            entry.camera->GetInterface(interface) == OrvErrorSuccess && interface)
            return linkMegabytesPerSecond(m_system, *interface);
    }
    return std::nullopt;
}

} // namespace viewer
