// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace cli {

/// What a link carries, as it was measured.
struct SavedCapacity {
    double bytesPerSecond = 0;
    /// Nominal speed of the link at that time; 0 when it was unknown. The capacity counts only
    /// while the link has that speed.
    std::uint64_t bitsPerSecond = 0;
    QDate date;
    /// Names and IDs of the interfaces of the link.
    QStringList interfaces;
};

/// The capacities that "spanlet calibrate --save" keeps: a file of this user on this host,
/// capacities.conf in the first of session::configurationFolders(). Those of simulated links are
/// apart. Not thread-safe.
class SavedCapacities {
public:
    /// \p areSimulated: whether the links are.
    explicit SavedCapacities(bool areSimulated);

    static QString file();
    /// Throws a Failure when the file cannot be written or is broken. Makes its folder.
    static void requireWritable();

    /// \p link identifies a link, see linkKey(). Warns of an entry that is broken, which counts as
    /// absent. Throws a Failure when the file cannot be read or is broken.
    std::optional<SavedCapacity> find(const QString& link) const;
    /// Throws a Failure when the file cannot be written.
    void save(const QString& link, const SavedCapacity& capacity);
    /// Forgets the capacities of the interface with a name or an ID; of all when it is empty.
    /// Returns the names of the interfaces that had one. Throws a Failure when the file cannot be
    /// written.
    QStringList forget(const QString& interface);

private:
    QString keyOf(const QString& link) const;
    const QString m_group;
};

} // namespace cli
