// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Command.h"

namespace cli {

Command listCommand();
Command benchmarkCommand();
Command watchCommand();
Command observeCommand();
Command autoSetCommand();
Command planCommand();
Command calibrateCommand();
Command featuresCommand();
Command getCommand();
Command setCommand();
Command saveCommand();
Command restoreCommand();
Command setIpCommand();
Command runCommand();
Command doctorCommand();
Command reportCommand();
Command helpCommand();

} // namespace cli
