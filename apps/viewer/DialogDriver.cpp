// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/DialogDriver.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QTreeView>

#include <utility>

namespace viewer {

namespace {

constexpr int pollInterval = 50;
/// Milliseconds after which the help has opened over the dialog, if it does.
constexpr int helpDelay = 200;
constexpr int logAnimation = 1000;
/// How long a step may take, beside the benchmark's own time.
constexpr std::chrono::seconds patience(60);
/// Seconds that a benchmark may take longer than it was set to.
constexpr int lateness = 30;
/// Tall enough to show a host's cameras and the log.
constexpr QSize pictureSize(1192, 860);
/// Column 1 shows the widgets that change a camera's bandwidth, not a figure.
constexpr int firstStatisticsColumn = 2;

template <typename T> T* child(QWidget* dialog, const char* name) {
    return dialog != nullptr ? dialog->findChild<T*>(QString::fromLatin1(name)) : nullptr;
}

QString heading(const QAbstractItemModel& model, int column) {
    QString text = model.headerData(column, Qt::Horizontal).toString();
    // A soft hyphen marks where a word may be broken, which is not done here.
    constexpr QChar softHyphen(0x00ad);
    return text.remove(softHyphen).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

QModelIndex firstLeaf(const QAbstractItemModel& model) {
    QModelIndex index = model.index(0, 0);
    while (model.hasChildren(index) && index.isValid())
        index = model.index(0, 0, index);
    return index;
}

/// The row with this text that has children, anywhere below \p parent.
QModelIndex findInterface(const QAbstractItemModel& model, const QString& text,
                          const QModelIndex& parent = {}) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (!model.hasChildren(index))
            continue;
        if (index.data().toString() == text)
            return index;
        const QModelIndex below = findInterface(model, text, index);
        if (below.isValid())
            return below;
    }
    return {};
}

} // namespace

DialogDriver::DialogDriver(CommandLine tasks, QObject* parent)
    : QObject(parent), m_tasks(std::move(tasks)) {
    m_watchdog.expect("opening the dialog", patience);
    then(&DialogDriver::findDialog, pollInterval);
}

const QVector<QStringList>& DialogDriver::statistics() const {
    return m_statistics;
}

QStringList DialogDriver::failures() const {
    return m_isDone ? m_failures
                    : m_failures + QStringList(QStringLiteral("The dialog closed too early."));
}

void DialogDriver::then(Step step, int milliseconds) {
    QTimer::singleShot(milliseconds, this, [this, step] {
        // Without a dialog only looking for one makes sense.
        if (m_dialog || step == &DialogDriver::findDialog)
            (this->*step)();
    });
}

void DialogDriver::findDialog() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (child<QTreeView>(window, "treeViewCameras") != nullptr && window->isModal() &&
            window->isVisible()) {
            m_dialog = window;
        }
    }
    if (m_dialog)
        then(&DialogDriver::closeHelp, helpDelay);
    else
        then(&DialogDriver::findDialog, pollInterval);
}

void DialogDriver::closeHelp() {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal != nullptr && modal != m_dialog)
        modal->close();
    then(&DialogDriver::autoSet, pollInterval);
}

void DialogDriver::autoSet() {
    auto* interfaces = child<QComboBox>(m_dialog, "comboInterface");
    const auto* button = child<QPushButton>(m_dialog, "buttonAutoSet");
    for (int i = 0; m_tasks.autoSets && i < interfaces->count(); ++i) {
        interfaces->setCurrentIndex(i);
        QAction* action = button->menu()->actions().constFirst();
        // trigger() would also run a disabled action.
        if (action->isEnabled()) {
            action->trigger();
        } else {
            m_failures
                << QStringLiteral("Auto Set is not offered on %1.").arg(interfaces->currentText());
        }
    }
    // Before the benchmark: the dialog ignores the selected camera after one.
    then(&DialogDriver::openFeatures, 0);
}

void DialogDriver::openFeatures() {
    if (m_tasks.featurePictureFile.isEmpty()) {
        then(&DialogDriver::startBenchmark, 0);
        return;
    }
    auto* cameras = child<QTreeView>(m_dialog, "treeViewCameras");
    cameras->setCurrentIndex(firstLeaf(*cameras->model()));
    child<QAbstractButton>(m_dialog, "buttonFeatureTree")->click();
    then(&DialogDriver::takeFeaturePicture, pollInterval);
}

void DialogDriver::takeFeaturePicture() {
    if (const auto* features = child<QTreeView>(m_dialog, "treeFeatures")) {
        savePicture(*features->window(), m_tasks.featurePictureFile);
        features->window()->close();
    } else {
        m_failures << QStringLiteral("There is no camera whose features can be shown.");
    }
    then(&DialogDriver::startBenchmark, 0);
}

void DialogDriver::startBenchmark() {
    if (m_tasks.benchmarkSeconds == 0) {
        then(&DialogDriver::showLog, 0);
        return;
    }
    auto* interfaces = child<QComboBox>(m_dialog, "comboInterface");
    auto* seconds = child<QSpinBox>(m_dialog, "spinBenchmark");
    auto* button = child<QAbstractButton>(m_dialog, "buttonBenchmark");
    if (interfaces == nullptr || seconds == nullptr || button == nullptr) {
        m_failures << QStringLiteral("The dialog has no benchmark.");
        then(&DialogDriver::showLog, 0);
        return;
    }
    if (m_nextInterface >= interfaces->count()) {
        if (m_statistics.isEmpty())
            m_failures << QStringLiteral("There is no camera to run a benchmark on.");
        then(&DialogDriver::showLog, 0);
        return;
    }
    m_watchdog.expect("the benchmark", patience + std::chrono::seconds(m_tasks.benchmarkSeconds));
    interfaces->setCurrentIndex(m_nextInterface);
    seconds->setValue(m_tasks.benchmarkSeconds);
    button->click();
    if (!button->isChecked())
        m_failures << QStringLiteral("No benchmark starts on %1.").arg(interfaces->currentText());
    m_sinceStart.start();
    then(&DialogDriver::awaitBenchmark, pollInterval);
}

void DialogDriver::awaitBenchmark() {
    const auto* interfaces = child<QComboBox>(m_dialog, "comboInterface");
    auto* button = child<QAbstractButton>(m_dialog, "buttonBenchmark");
    if (button->isChecked()) {
        if (m_sinceStart.elapsed() > 1000 * (m_tasks.benchmarkSeconds + lateness)) {
            m_failures << QStringLiteral("The benchmark of %1 did not end by itself.")
                              .arg(interfaces->currentText());
            button->click();
        }
        then(&DialogDriver::awaitBenchmark, pollInterval);
        return;
    }
    collectStatistics(interfaces->currentText());
    ++m_nextInterface;
    then(&DialogDriver::startBenchmark, 0);
}

void DialogDriver::showLog() {
    m_watchdog.expect("closing the dialog", patience);
    if (m_tasks.pictureFile.isEmpty()) {
        then(&DialogDriver::close, 0);
        return;
    }
    if (auto* button = child<QAbstractButton>(m_dialog, "buttonShowLogging"))
        button->click();
    m_dialog->resize(m_dialog->size().expandedTo(pictureSize));
    then(&DialogDriver::takePicture, logAnimation);
}

void DialogDriver::takePicture() {
    savePicture(*m_dialog, m_tasks.pictureFile);
    then(&DialogDriver::close, 0);
}

void DialogDriver::savePicture(QWidget& window, const QString& file) {
    if (!window.grab().save(file))
        m_failures << QStringLiteral("The picture cannot be saved as %1.").arg(file);
}

void DialogDriver::close() {
    m_isDone = true;
    m_dialog->close();
}

void DialogDriver::collectStatistics(const QString& interfaceName) {
    const QAbstractItemModel& model = *child<QTreeView>(m_dialog, "treeViewCameras")->model();
    const int columns = model.columnCount();
    if (m_statistics.isEmpty()) {
        QStringList headings{QStringLiteral("Interface"), QStringLiteral("Camera")};
        for (int column = firstStatisticsColumn; column < columns; ++column)
            headings << heading(model, column);
        m_statistics << headings;
    }
    const QModelIndex parent = findInterface(model, interfaceName);
    for (int row = 0; row < model.rowCount(parent); ++row) {
        QStringList figures{interfaceName, model.index(row, 0, parent).data().toString()};
        for (int column = firstStatisticsColumn; column < columns; ++column)
            figures << model.index(row, column, parent).data().toString();
        m_statistics << figures;
    }
}

} // namespace viewer
