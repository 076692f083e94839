// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AddressChange.h"

namespace cli {

Report changeAddress(Context&) {
    throw Failure(QStringLiteral("\"set-ip\" needs Linux."), ExitCode::WrongUse);
}

} // namespace cli
