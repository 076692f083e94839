// SPDX-License-Identifier: BSD-3-Clause
#include "losses/LossText.h"

#include "logging/MessageText.h"

std::string lossText(const QString& form, const std::vector<std::string>& values) {
    return filledForm(form.toStdString(), values);
}

std::string frameCount(std::uint64_t number) {
    return lossText(number == 1 ? Losses::tr("%1 frame") : Losses::tr("%1 frames"),
                    {std::to_string(number)});
}

std::string packetCount(std::uint64_t number) {
    return lossText(number == 1 ? Losses::tr("%1 packet") : Losses::tr("%1 packets"),
                    {std::to_string(number)});
}
