// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AddressChange.h"
#include "cli/Commands.h"

namespace cli {

Command setIpCommand() {
    Command command;
    command.name = QStringLiteral("set-ip");
    command.summary = QStringLiteral(
        "Give a GigE Vision camera an IPv4 address, also one of another subnet. The camera is "
        "named by its ID, MAC address, serial number or user-defined name. It must not be in use. "
        "The address must belong to a subnet of the adapter on which the camera answers; \"auto\" "
        "takes a free one. Without PREFIX, the camera gets the mask of the adapter. Real cameras "
        "on Linux only.");
    command.operands = QStringLiteral("CAMERA ADDRESS[/PREFIX]|auto");
    command.fewestOperands = 2;
    command.mostOperands = 2;
    command.options = {
        {QStringLiteral("gateway"), QStringLiteral("The camera's default gateway; none if absent."),
         QStringLiteral("address")},
        {QStringLiteral("persistent"),
         QStringLiteral("Keep the address after a restart of the camera, too.")},
        {QStringLiteral("dry-run"),
         QStringLiteral("Check everything and print what would be done, but do not do it.")}};
    command.examples =
        QStringList{QStringLiteral("set-ip FC0001 auto --dry-run"),
                    QStringLiteral("set-ip 02:fc:7f:00:00:02 127.0.0.20"),
                    QStringLiteral("set-ip DEV_02FC7F000002 127.0.0.2/8 --persistent")};
    command.run = changeAddress;
    return command;
}

} // namespace cli
