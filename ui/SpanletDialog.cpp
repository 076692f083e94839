// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SpanletDialog.h"

#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "logging/LogMessageWidget.h"
#include "logging/QtMessageHandler.h"
#include "logging/RowHeights.h"
#include "logging/ThreadLogStream.h"
#include "ui/CameraTreeDelegate.h"
#include "ui_SpanletDialog.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QSettings>

#include <iostream>
#include <utility>

namespace {

constexpr int timerIntervalMs = 500;
constexpr int darkLightness = 100;

QString showDebugKey() {
    return QStringLiteral("ShowDebugMessages");
}

/// Bandwidth limit of a camera in whole megabytes per second; a dash when it has none.
QString bandwidthText(const CameraHandler& handler) {
    const std::int64_t bandwidth = handler.isOpened() ? handler.getBandwidth() : 0;
    return bandwidth > 0 ? QString::number(qRound64(static_cast<double>(bandwidth) / 1e6))
                         : QStringLiteral("\u2013");
}

QLabel* makeBandwidthLabel(const CameraHandler& handler, QWidget* parent) {
    auto* label = new QLabel(bandwidthText(handler), parent);
    label->setObjectName(QStringLiteral("labelBandwidth"));
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::Text);
    // A click on it selects the row, as on any other cell.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

SpanletDialog::SpanletDialog(OrvCPP::OrvSystem& system, bool autoAdjustPacketSize, QWidget* parent,
                             std::shared_ptr<SystemController> controller)
    : QDialog(parent), m_form(std::make_unique<Ui::SpanletDialog>()),
      m_autoAdjustPacketSize(autoAdjustPacketSize),
      m_settings(new QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"), this)) {
    m_form->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    updateRefreshIcon();
    m_form->buttonShowLogging->setContent(m_form->tableLog);
    setUpLogging();
    setUpAutoSetMenu();
    connect(m_form->buttonBenchmark, &QPushButton::clicked, this,
            &SpanletDialog::onStartStopBenchmark);
    // After the log, which shows what the controller has to say about the host.
    m_controller = controller ? std::move(controller) : makeSystemController(system);
    m_model = new CameraListModel(m_controller, this);
    setUpTree();
    connect(m_form->buttonRefresh, &QPushButton::clicked, this,
            &SpanletDialog::onRefreshButtonClicked);
    onRefreshButtonClicked();
}

SpanletDialog::~SpanletDialog() {
    qInstallMessageHandler(nullptr);
    endBenchmark();
}

void SpanletDialog::updateRefreshIcon() {
    const bool dark = palette().color(QPalette::Window).lightness() < darkLightness;
    m_form->buttonRefresh->setIcon(
        QIcon(dark ? QStringLiteral(":/images/images/refresh_darkmode.png")
                   : QStringLiteral(":/images/images/refresh.png")));
}

void SpanletDialog::setUpLogging() {
    using Logging::LogMessageWidget;
    using Logging::ThreadLogStream;
    const auto showDebug = [this] {
        return m_settings->value(showDebugKey(), false).toBool();
    };

    m_outputStream = std::make_unique<ThreadLogStream>(std::cout, LogMessageType::StdOut);
    m_errorStream = std::make_unique<ThreadLogStream>(std::cerr, LogMessageType::StdErr);
    m_logReceiver = std::make_unique<LogMessageWidget>(m_form->tableLog, showDebug());
    connect(this, &SpanletDialog::settingsSaved, m_logReceiver.get(),
            [this, showDebug] { m_logReceiver->setShowDebugMessages(showDebug()); });
    for (const ThreadLogStream* stream : {m_outputStream.get(), m_errorStream.get()}) {
        connect(stream, &ThreadLogStream::sendLogString, m_logReceiver.get(),
                &LogMessageWidget::catchMessage);
    }
    qInstallMessageHandler(qtMessageHandler);

    for (QHeaderView* header :
         {m_form->tableLog->horizontalHeader(), m_form->tableLog->verticalHeader()}) {
        // Looking at about as many rows as are visible keeps a new line as cheap in a long log as
        // in a short one.
        header->setResizeContentsPrecision(Logging::RowHeights::newestRows);
        header->setSectionResizeMode(QHeaderView::ResizeToContents);
    }
}

void SpanletDialog::setUpAutoSetMenu() {
    auto* menu = new QMenu(m_form->buttonAutoSet);
    m_autoSetInterfaceAction = menu->addAction(tr("Auto Set Interface"));
    m_autoSetCameraAction = menu->addAction(tr("Auto Set Camera"));
    m_form->buttonAutoSet->setMenu(menu);
    m_autoSetInterfaceAction->setEnabled(false);
    m_autoSetCameraAction->setEnabled(false);
}

void SpanletDialog::setUpTree() {
    QTreeView* tree = m_form->treeViewCameras;
    connect(m_model, &CameraListModel::interfaceListChanged, this,
            &SpanletDialog::onSetInterfaceSelector);
    m_model->setHeaderLabels({tr("Detected Cameras"), tr("Bandwidth (MB/s)"),
                              tr("Received\nFrames /s"), tr("Received\nPayload (MB)"),
                              tr("Received\nFrames"), tr("Sent\nFrames"), tr("Lost\nFrames"),
                              tr("Incomplete\nFrames")});
    const QString statistics = tr("Statistics values, collected during the last acquisition");
    m_model->setHeaderToolTips(
        {tr("Click the Refresh button to update the camera tree"),
         tr("Interface throughput limit\nCurrent bandwidth assigned to the camera"), statistics,
         statistics, statistics, statistics, statistics, statistics});
    tree->setModel(m_model);
    tree->setItemDelegate(new CameraTreeDelegate(tree));
    tree->expandAll();
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    QHeaderView* header = tree->header();
    // A label that is wider than its column goes on in a second line.
    header->setDefaultAlignment(Qt::Alignment(QFlag(int{Qt::AlignCenter} | int{Qt::TextWordWrap})));
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(CameraListModel::NameColumn, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(CameraListModel::BandwidthColumn, QHeaderView::ResizeToContents);

    connect(&m_timer, &QTimer::timeout, this, &SpanletDialog::onTimerTimeout);
    m_form->grpStatistics->setEnabled(false);
    connect(m_model, &CameraListModel::dataChanged, this, &SpanletDialog::onDisableItems);
    connect(tree->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &SpanletDialog::onClickTreeView);
    connect(m_form->comboInterface, qOverload<int>(&QComboBox::currentIndexChanged), m_model,
            &CameraListModel::selectInterface);
    connect(m_model, &CameraListModel::interfaceSelected, this, &SpanletDialog::onSelectInterface);
    connect(m_model, &CameraListModel::interfaceSelected, tree, &QTreeView::setCurrentIndex);
    connect(tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SpanletDialog::colourRowWidgets);
}

void SpanletDialog::colourRowWidgets(const QItemSelection& selected,
                                     const QItemSelection& deselected) {
    const auto colour = [this](const QItemSelection& rows, QPalette::ColorRole role) {
        for (const QModelIndex& index : rows.indexes()) {
            if (QWidget* widget = m_form->treeViewCameras->indexWidget(index))
                widget->setForegroundRole(role);
        }
    };
    colour(selected, QPalette::HighlightedText);
    colour(deselected, QPalette::Text);
}

void SpanletDialog::onDisableItems(QModelIndex upperLeft, QModelIndex bottomRight,
                                   QVector<int> roles) {
    if (!roles.contains(Qt::CheckStateRole) && !roles.contains(Qt::UserRole))
        return;
    for (int row = upperLeft.row(); row <= bottomRight.row(); ++row) {
        const QModelIndex cell = upperLeft.sibling(row, CameraListModel::BandwidthColumn);
        QWidget* widget = m_form->treeViewCameras->indexWidget(cell);
        if (widget != nullptr)
            widget->setEnabled(m_model->flags(cell).testFlag(Qt::ItemIsEnabled));
    }
    // The other cells of the rows follow the check box, too, and the view was not told of them.
    m_form->treeViewCameras->viewport()->update();
    onSelectInterface(upperLeft.parent());
}

void SpanletDialog::onSelectInterface(QModelIndex /*index*/) {
    m_form->grpStatistics->setEnabled(m_model->cameraCount() > 0);
}

void SpanletDialog::onSetInterfaceSelector(InterfaceList interfaces) {
    m_form->comboInterface->clear();
    for (const auto& [id, index] : qAsConst(interfaces))
        m_form->comboInterface->addItem(id, index);
}

void SpanletDialog::onStartStopBenchmark() {
    if (m_form->buttonBenchmark->isChecked())
        startBenchmark();
    else
        stopBenchmarkByUser();
}

void SpanletDialog::startBenchmark() {
    m_remainingMs = m_form->spinBenchmark->value() * 1000;
    if (m_remainingMs == 0)
        m_endless = true;
    m_model->enableWidgets(false);
    m_form->comboInterface->setEnabled(false);
    m_form->spinBenchmark->setEnabled(false);
    m_form->buttonAutoSet->setEnabled(false);
    m_controller->startBenchmark(interfaceIndex(), m_autoAdjustPacketSize);
    // Wherever the user looks while frames are acquired, the interface stays selected.
    disconnect(m_form->treeViewCameras->selectionModel(), &QItemSelectionModel::currentRowChanged,
               this, &SpanletDialog::onClickTreeView);
    m_timer.start(timerIntervalMs);
}

void SpanletDialog::finishBenchmark() {
    m_controller->stopBenchmark(interfaceIndex());
    m_timer.stop();
    m_remainingMs = 0;
    m_endless = false;
    m_form->comboInterface->setEnabled(true);
    m_form->spinBenchmark->setEnabled(true);
    m_model->enableWidgets(true);
}

void SpanletDialog::stopBenchmarkByUser() {
    finishBenchmark();
    m_form->buttonAutoSet->setEnabled(true);
    m_form->spinBenchmark->setValue(0);
    connect(m_form->treeViewCameras->selectionModel(), &QItemSelectionModel::currentRowChanged,
            this, &SpanletDialog::onClickTreeView);
}

void SpanletDialog::onTimerTimeout() {
    m_model->updateItemData();
    if (m_endless)
        return;
    m_remainingMs -= m_timer.interval();
    m_form->spinBenchmark->setValue(m_remainingMs / 1000);
    if (m_remainingMs > 0)
        return;
    finishBenchmark();
    m_form->treeViewCameras->setEnabled(true);
    m_form->buttonBenchmark->setChecked(false);
}

void SpanletDialog::endBenchmark() {
    if (!m_timer.isActive())
        return;
    m_endless = false;
    m_remainingMs = 0;
    onTimerTimeout();
}

int SpanletDialog::interfaceIndex() const {
    return m_form->comboInterface->currentData(Qt::UserRole).toInt();
}

void SpanletDialog::onRefreshButtonClicked() {
    const bool hadFocus = m_form->buttonRefresh->hasFocus();
    setCursor(Qt::WaitCursor);
    m_form->buttonRefresh->setEnabled(false);
    processEvents();
    endBenchmark();
    removeRowWidgets();
    // The cameras are about to go: no benchmark may start on them. Selecting an interface of the
    // new tree lets it start again.
    m_form->grpStatistics->setEnabled(false);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_model->setupModelData();
    m_form->treeViewCameras->expandAll();
    placeRowWidgets();
    m_form->buttonRefresh->setEnabled(true);
    if (hadFocus)
        m_form->buttonRefresh->setFocus();
    unsetCursor();
}

void SpanletDialog::processEvents() const {
    // Until the dialog is shown, what the user does is meant for the host, which must not be
    // operated from inside of its call: it might call again.
    QCoreApplication::processEvents(isVisible() ? QEventLoop::AllEvents
                                                : QEventLoop::ExcludeUserInputEvents);
}

QModelIndexList SpanletDialog::bandwidthCells() const {
    QModelIndexList cells;
    for (const QModelIndex& type : m_model->childIndexes()) {
        for (const QModelIndex& interfaceRow : m_model->childIndexes(type)) {
            for (const QModelIndex& camera : m_model->childIndexes(interfaceRow))
                cells.append(camera.siblingAtColumn(CameraListModel::BandwidthColumn));
        }
    }
    return cells;
}

void SpanletDialog::removeRowWidgets() {
    QTreeView* tree = m_form->treeViewCameras;
    for (const QModelIndex& cell : bandwidthCells()) {
        QWidget* widget = tree->indexWidget(cell);
        // The view does not notice that a widget is deleted, and would lay it out once more.
        tree->setIndexWidget(cell, nullptr);
        delete widget;
    }
}

void SpanletDialog::placeRowWidgets() {
    QTreeView* tree = m_form->treeViewCameras;
    for (const QModelIndex& cell : bandwidthCells()) {
        QLabel* label = makeBandwidthLabel(*m_model->cameraHandler(cell), tree);
        label->setEnabled(m_model->flags(cell).testFlag(Qt::ItemIsEnabled));
        tree->setIndexWidget(cell, label);
        // The tree fills visibly, since each camera can take a while.
        processEvents();
    }
}

void SpanletDialog::onClickTreeView(QModelIndex current, QModelIndex /*previous*/) {
    const bool isInterface = m_model->hasChildren(current) && current.parent().isValid();
    if (isInterface)
        m_form->comboInterface->setCurrentText(
            current.siblingAtColumn(CameraListModel::NameColumn).data().toString());
}

void SpanletDialog::onAutoAdjustPacketsize(bool state) {
    m_autoAdjustPacketSize = state;
}

void SpanletDialog::done(int /*code*/) {
    endBenchmark();
    QDialog::done(autoAdjustResult());
}

void SpanletDialog::showEvent(QShowEvent* event) {
    emit dialogIsReadyLoaded();
    QDialog::showEvent(event);
}

void SpanletDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        updateRefreshIcon();
    QDialog::changeEvent(event);
}

void SpanletDialog::closeEvent(QCloseEvent* event) {
    endBenchmark();
    // A dialog that is not visible closes without done().
    setResult(autoAdjustResult());
    QDialog::closeEvent(event);
}
