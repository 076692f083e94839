// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QCoreApplication>

#include <cstdint>
#include <string>
#include <vector>

/// Context of the texts of findings, for translation.
class Losses {
    Q_DECLARE_TR_FUNCTIONS(Losses)
};

/// A form that Losses::tr() answered, with \p values in place of "%1", "%2" and so on. Reentrant.
std::string lossText(const QString& form, const std::vector<std::string>& values = {});

/// "1 frame", "2 frames". Reentrant.
std::string frameCount(std::uint64_t number);
/// "1 packet", "2 packets". Reentrant.
std::string packetCount(std::uint64_t number);
