// SPDX-License-Identifier: BSD-3-Clause
#include <QObject>
#include <QtPlugin>

/// A plug-in that claims Spanlet's interface in its metadata and does not implement it, as one
/// built against another version of the interface would.
class UnrelatedPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "SpanletInterface")
};

#include "UnrelatedPlugin.moc"
