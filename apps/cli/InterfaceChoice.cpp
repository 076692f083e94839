// SPDX-License-Identifier: BSD-3-Clause
#include "cli/InterfaceChoice.h"

#include "cli/Arguments.h"
#include "cli/Failure.h"

#include <algorithm>

namespace cli {

namespace {

const QLatin1String namedOption("interface");
const QLatin1String allOption("all");

std::vector<const HostInterface*> allInterfaces(const Cameras& cameras) {
    std::vector<const HostInterface*> all;
    for (const HostInterface& interface : cameras.interfaces())
        all.push_back(&interface);
    return all;
}

/// Each interface once, although it may be named several times.
std::vector<const HostInterface*> namedInterfaces(const Cameras& cameras,
                                                  const QStringList& names) {
    std::vector<const HostInterface*> named;
    for (const QString& name : names) {
        const HostInterface* interface = &cameras.findInterface(name);
        if (std::find(named.begin(), named.end(), interface) == named.end())
            named.push_back(interface);
    }
    return named;
}

} // namespace

QString ChosenInterfaces::names() const {
    QStringList names;
    for (const HostInterface* interface : interfaces)
        names.append(interface->name);
    return names.join(QStringLiteral(", "));
}

CameraList ChosenInterfaces::cameras() const {
    CameraList all;
    for (const HostInterface* interface : interfaces)
        all.insert(all.end(), interface->cameras.begin(), interface->cameras.end());
    return all;
}

QList<QCommandLineOption> interfaceOptions(const QString& interfaceHelp, const QString& allHelp) {
    return {{namedOption, interfaceHelp, QStringLiteral("interface")}, {allOption, allHelp}};
}

void checkInterfaceOptions(const Arguments& arguments) {
    if (arguments.has(namedOption) && arguments.has(allOption))
        throw Failure(QStringLiteral("Either --interface or --all can be given."),
                      ExitCode::WrongUse);
}

bool areSeveralInterfacesWanted(const Arguments& arguments) {
    return arguments.values(namedOption).size() > 1 || arguments.has(allOption);
}

ChosenInterfaces chosenInterfaces(const Cameras& cameras, const Arguments& arguments) {
    const QStringList names = arguments.values(namedOption);
    ChosenInterfaces chosen;
    chosen.isList = areSeveralInterfacesWanted(arguments);
    chosen.interfaces = names.isEmpty() ? allInterfaces(cameras) : namedInterfaces(cameras, names);
    if (chosen.interfaces.empty())
        throw Failure(QStringLiteral("There is no camera."));
    if (chosen.interfaces.size() > 1 && !chosen.isList)
        throw Failure(QStringLiteral("Give --all, or --interface: %1.").arg(chosen.names()),
                      ExitCode::WrongUse);
    return chosen;
}

} // namespace cli
