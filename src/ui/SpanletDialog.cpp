// SPDX-License-Identifier: BSD-3-Clause
#include "ui/SpanletDialog.h"

#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "logging/Log.h"
#include "logging/QtMessageHandler.h"
#include "logging/ThreadLogStream.h"
#include "ui/BandwidthColumn.h"
#include "ui/CameraTreeDelegate.h"
#include "ui/LogMessageWidget.h"
#include "ui/RowHeights.h"
#include "ui/SettingsDialog.h"
#include "ui/SettingsKeys.h"
#include "ui/SupportDialog.h"
#include "ui/Theme.h"
#include "ui/WaitCursor.h"
#include "ui/features/FeatureTreeDialog.h"
#include "ui_SpanletDialog.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>

#include <iostream>
#include <utility>

namespace {

constexpr int timerIntervalMs = 500;
/// Delay until the Get Started page opens over the dialog.
constexpr int supportDelayMs = 25;

/// A margin as a fraction; the store has percent.
double fraction(const QSettings& store, const SettingsKeys::Setting<int>& margin) {
    return SettingsKeys::readMargin<double>(store, margin) / 100.0;
}

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
    window.activateWindow();
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
    // After the log: the controller logs what it finds on the host.
    m_controller = controller ? std::move(controller) : makeSystemController(system);
    m_model = new CameraListModel(m_controller, this);
    setUpTree();
    connectTree();
    setUpBandwidthColumn();
    connect(m_form->buttonRefresh, &QPushButton::clicked, this,
            &SpanletDialog::onRefreshButtonClicked);
    onRefreshButtonClicked();
    connect(m_form->buttonFeatureTree, &QPushButton::clicked, this,
            &SpanletDialog::onShowFeatureTreeDialog);
    connect(m_form->buttonSettings, &QPushButton::clicked, this,
            &SpanletDialog::onSettingsButtonClicked);
    setUpHelp();
    fitTexts();
}

SpanletDialog::~SpanletDialog() {
    end();
    qDeleteAll(findChildren<FeatureTreeDialog*>());
    // The threads of cameras may log until the last reference to a camera is gone: before the log
    // streams, which are members, end.
    m_bandwidthColumn->clear();
    delete m_bandwidthColumn;
    delete m_model;
    m_controller.reset();
    qInstallMessageHandler(nullptr);
}

void SpanletDialog::updateRefreshIcon() {
    const bool dark = Theme::isDark(palette());
    m_form->buttonRefresh->setIcon(
        Theme::icon(dark ? QStringLiteral(":/images/images/refresh_darkmode.png")
                         : QStringLiteral(":/images/images/refresh.png")));
}

void SpanletDialog::fitTexts() {
    QComboBox* selector = m_form->comboInterface;
    // The size hint is some pixels short of a large font's texts.
    selector->setMinimumWidth(selector->sizeHint().width() +
                              selector->fontMetrics().horizontalAdvance(QLatin1Char('0')));
    // The form's minimum widths are too small for some fonts and languages.
    for (QPushButton* button : {m_form->buttonAbout, m_form->buttonSupport})
        button->setMinimumWidth(qMax(button->minimumWidth(), button->sizeHint().width()));

    QHeaderView* header = m_form->treeViewCameras->header();
    const int margins = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    // What stays in one line: words, and parts of words up to a soft hyphen, which is then shown.
    const QRegularExpression part(QStringLiteral("[^ \n\\x{ad}]+\\x{ad}?"));
    int widest = 0;
    for (int column = CameraListModel::FrameRateColumn; column < header->count(); ++column) {
        const QFontMetrics metrics(
            m_model->headerData(column, Qt::Horizontal, Qt::FontRole).value<QFont>());
        const QString label = m_model->headerData(column, Qt::Horizontal).toString();
        for (auto found = part.globalMatch(label); found.hasNext();) {
            const QString shown =
                found.next().captured().replace(QChar::SoftHyphen, QLatin1Char('-'));
            widest = qMax(widest, metrics.horizontalAdvance(shown));
        }
    }
    header->setMinimumSectionSize(widest + margins);
    fitHeaderHeight(*header);
}

void SpanletDialog::fitHeaderHeight(QHeaderView& header) {
    int highest = 0;
    for (int column = CameraListModel::FrameRateColumn; column < header.count(); ++column) {
        const QFontMetrics metrics(
            m_model->headerData(column, Qt::Horizontal, Qt::FontRole).value<QFont>());
        const QRect narrowest(0, 0, header.minimumSectionSize(), 0);
        const QRect label =
            metrics.boundingRect(narrowest, static_cast<int>(header.defaultAlignment()),
                                 m_model->headerData(column, Qt::Horizontal).toString());
        highest = qMax(highest, label.height());
    }
    // The model leaves room for two lines.
    header.setMinimumHeight(highest);
}

void SpanletDialog::setUpLogging() {
    using Logging::LogMessageWidget;
    using Logging::ThreadLogStream;
    const auto showDebug = [this] {
        return SettingsKeys::read(*m_settings, SettingsKeys::showDebugMessages);
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
        // Measures about as many rows as are visible: a new line costs the same in a long log.
        header->setResizeContentsPrecision(RowHeights::newestRows);
        header->setSectionResizeMode(QHeaderView::ResizeToContents);
    }
}

void SpanletDialog::setUpAutoSetMenu() {
    auto* menu = new QMenu(m_form->buttonAutoSet);
    m_autoSetInterfaceAction =
        menu->addAction(tr("Auto Set Interface"), this, &SpanletDialog::onAutoSetButtonClicked);
    m_autoSetCameraAction =
        menu->addAction(tr("Auto Set Camera"), this, &SpanletDialog::onAutoSetCameraButtonClicked);
    m_form->buttonAutoSet->setMenu(menu);
    m_autoSetInterfaceAction->setEnabled(false);
    m_autoSetCameraAction->setEnabled(false);
}

void SpanletDialog::setUpTree() {
    m_model->setHeaderLabels({tr("Detected Cameras"), tr("Bandwidth (MB/s)"),
                              tr("Received\nFrames /s"), tr("Received\nPayload (MB)"),
                              tr("Received\nFrames"), tr("Sent\nFrames"), tr("Lost\nFrames"),
                              tr("Incomplete\nFrames")});
    const QString statistics = tr("Statistics values, collected during the last acquisition");
    m_model->setHeaderToolTips(
        {tr("Click the Refresh button to update the camera tree"),
         tr("Interface throughput limit\nCurrent bandwidth assigned to the camera"), statistics,
         statistics, statistics, statistics, statistics, statistics});
    QTreeView* tree = m_form->treeViewCameras;
    tree->setModel(m_model);
    tree->setItemDelegate(new CameraTreeDelegate(tree));
    tree->expandAll();
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    QHeaderView* header = tree->header();
    // A label that is wider than its column goes on in a second line.
    header->setDefaultAlignment(Qt::Alignment(QFlag(int{Qt::AlignCenter} | int{Qt::TextWordWrap})));
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(CameraListModel::NameColumn, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(CameraListModel::BandwidthColumn, QHeaderView::ResizeToContents);
    m_form->grpStatistics->setEnabled(false);
}

void SpanletDialog::connectTree() {
    QTreeView* tree = m_form->treeViewCameras;
    const QItemSelectionModel* selection = tree->selectionModel();
    connect(m_model, &CameraListModel::interfaceListChanged, this,
            &SpanletDialog::onSetInterfaceSelector);
    connect(m_model, &CameraListModel::dataChanged, this, &SpanletDialog::onDisableItems);
    connect(selection, &QItemSelectionModel::currentRowChanged, this,
            &SpanletDialog::onClickTreeView);
    connect(m_form->comboInterface, qOverload<int>(&QComboBox::currentIndexChanged), m_model,
            &CameraListModel::selectInterface);
    connect(m_model, &CameraListModel::interfaceSelected, this, &SpanletDialog::onSelectInterface);
    connect(m_model, &CameraListModel::interfaceSelected, tree, &QTreeView::setCurrentIndex);
    connect(selection, &QItemSelectionModel::selectionChanged, this,
            &SpanletDialog::colourRowWidgets);
    // The space key toggles the check box of the current cell, which only this column has.
    connect(selection, &QItemSelectionModel::currentChanged, tree,
            [tree](const QModelIndex& current) {
                if (current.column() > CameraListModel::NameColumn)
                    tree->setCurrentIndex(current.siblingAtColumn(CameraListModel::NameColumn));
            });
    connect(&m_timer, &QTimer::timeout, this, &SpanletDialog::onTimerTimeout);
}

void SpanletDialog::setUpBandwidthColumn() {
    m_bandwidthColumn =
        new BandwidthColumn(*m_form->treeViewCameras, *m_model, m_controller, *m_settings, this);
    connect(m_model, &CameraListModel::dataChanged, this, &SpanletDialog::onChangeItemData);
    connect(this, &SpanletDialog::autoSetCameraFinished, m_bandwidthColumn,
            &BandwidthColumn::reloadCamera);
    connect(this, &SpanletDialog::autoSetInterfaceFinished, m_bandwidthColumn,
            [this] { m_bandwidthColumn->reloadInterface(m_form->comboInterface->currentText()); });
    connect(this, &SpanletDialog::settingsSaved, m_bandwidthColumn,
            &BandwidthColumn::updateMargins);
    for (const auto changed : {&BandwidthColumn::lockChanged, &BandwidthColumn::maximumChanged})
        connect(m_bandwidthColumn, changed, this,
                [this] { onSelectInterface(m_model->selectedInterface()); });
}

void SpanletDialog::setUpHelp() {
    connect(m_form->buttonSupport, &QPushButton::clicked, this,
            &SpanletDialog::onSupportButtonClicked);
    if (SettingsKeys::read(*m_settings, SettingsKeys::supportDialogActive))
        QTimer::singleShot(supportDelayMs, this, &SpanletDialog::onSupportButtonClicked);
    auto* menu = new QMenu(m_form->buttonAbout);
    menu->addAction(tr("About"), this, &SpanletDialog::onAboutButtonClicked);
    menu->addAction(tr("About Qt"), qApp, &QApplication::aboutQt);
    m_form->buttonAbout->setMenu(menu);
}

void SpanletDialog::onChangeItemData(QModelIndex topLeft) {
    m_bandwidthColumn->updateMaximum(topLeft);
}

void SpanletDialog::updateOffers(Change change, const QModelIndex& row) {
    const auto camera = m_model->cameraHandler(m_form->treeViewCameras->currentIndex());
    const bool hasCameras = m_model->cameraCount() > 0;
    m_form->grpStatistics->setEnabled(hasCameras);
    m_autoSetCameraAction->setEnabled(camera && !camera->isLocked() && camera->isOpened());
    if (change == Change::Interface) {
        const quint64 bandwidth =
            row.siblingAtColumn(CameraListModel::BandwidthColumn).data().toULongLong();
        m_autoSetInterfaceAction->setEnabled(hasCameras && bandwidth != 0 &&
                                             m_model->autoSettableCameraCount() > 0);
    } else if (change == Change::CurrentRow && isInterface(row)) {
        m_autoSetInterfaceAction->setEnabled(true);
    }
    if (change != Change::Interface || !hasCameras)
        m_form->buttonFeatureTree->setEnabled(camera != nullptr);
}

bool SpanletDialog::isInterface(const QModelIndex& row) const {
    return m_model->hasChildren(row) && row.parent().isValid();
}

void SpanletDialog::colourRowWidgets(const QItemSelection& selected,
                                     const QItemSelection& deselected) {
    const auto colour = [this](const QItemSelection& rows, bool areSelected) {
        for (const QModelIndex& index : rows.indexes()) {
            if (QWidget* widget = m_form->treeViewCameras->indexWidget(index))
                BandwidthColumn::showSelected(*widget, areSelected);
        }
    };
    colour(selected, true);
    colour(deselected, false);
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
    // The check box enables the other cells of its row, too. The model announced the first only.
    m_form->treeViewCameras->viewport()->update();
    onSelectInterface(upperLeft.parent());
}

void SpanletDialog::onSelectInterface(QModelIndex index) {
    updateOffers(Change::Interface, index);
}

void SpanletDialog::onSetInterfaceSelector(InterfaceList interfaces) {
    m_form->comboInterface->clear();
    for (const auto& [id, index] : qAsConst(interfaces))
        m_form->comboInterface->addItem(id, index);
    fitTexts();
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
    m_model->onStartStopBenchmark(true);
    m_form->comboInterface->setEnabled(false);
    m_form->spinBenchmark->setEnabled(false);
    m_form->buttonAutoSet->setEnabled(false);
    {
        // Real cameras take some tenths of a second each.
        const WaitCursor waiting;
        m_controller->startBenchmark(interfaceIndex(), m_autoAdjustPacketSize);
    }
    m_followsTree = false;
    m_timer.start(timerIntervalMs);
}

void SpanletDialog::finishBenchmark() {
    {
        const WaitCursor waiting;
        m_controller->stopBenchmark(interfaceIndex());
    }
    // Frames came until the last camera had stopped; the log has these figures, too.
    m_model->updateItemData();
    m_timer.stop();
    m_remainingMs = 0;
    m_endless = false;
    m_form->comboInterface->setEnabled(true);
    m_form->spinBenchmark->setEnabled(true);
    m_model->onStartStopBenchmark(false);
}

void SpanletDialog::stopBenchmarkByUser() {
    finishBenchmark();
    m_form->buttonAutoSet->setEnabled(true);
    m_form->spinBenchmark->setValue(0);
    m_followsTree = true;
    updateOffers(Change::EndOfBenchmark);
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
    m_bandwidthColumn->clear();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_model->setupModelData();
    onSelectInterface(m_model->selectedInterface());
    // Before the widgets are made, so that the user sees the progress.
    m_form->treeViewCameras->expandAll();
    m_bandwidthColumn->fill([this] { processEvents(); });
    m_form->treeViewCameras->expandAll();
    // New widgets are last in the tab order: the log comes after them.
    setTabOrder(previousInFocusChain(), m_form->buttonShowLogging);
    setTabOrder(m_form->buttonShowLogging, m_form->tableLog);
    m_form->buttonRefresh->setEnabled(true);
    if (hadFocus)
        m_form->buttonRefresh->setFocus();
    unsetCursor();
}

void SpanletDialog::processEvents() const {
    // Before the dialog is shown, input is for the host's windows. They must not get it inside
    // their own call of the plug-in: a click might call it again.
    QCoreApplication::processEvents(isVisible() ? QEventLoop::AllEvents
                                                : QEventLoop::ExcludeUserInputEvents);
}

void SpanletDialog::onClickTreeView(QModelIndex current, QModelIndex /*previous*/) {
    if (!m_followsTree)
        return;
    if (isInterface(current))
        m_form->comboInterface->setCurrentText(
            current.siblingAtColumn(CameraListModel::NameColumn).data().toString());
    updateOffers(Change::CurrentRow, current);
}

void SpanletDialog::onShowFeatureTreeDialog() {
    const auto camera = m_model->cameraHandler(m_form->treeViewCameras->currentIndex());
    if (!camera)
        return;
    const auto features = camera->getFeatureController();
    const CameraInfo info = camera->getCameraInfo();
    for (FeatureTreeDialog* open : findChildren<FeatureTreeDialog*>()) {
        if (!open->isVisible())
            continue;
        if (open->controller() == features) {
            bringToFront(*open);
            return;
        }
        // Of the same camera, found before a refresh.
        if (m_camerasOfTrees.at(open) == info.cameraId)
            open->close();
    }
    // Listing the features of a real camera can take seconds.
    const WaitCursor waiting;
    auto* dialog = new FeatureTreeDialog(features, this);
    m_camerasOfTrees[dialog] = info.cameraId;
    connect(dialog, &FeatureTreeDialog::closed, this, &SpanletDialog::onFeatureTreeClosed);
    dialog->setWindowTitle(tr("Feature Tree of %1-%2 (%3)")
                               .arg(QString::fromStdString(info.modelName),
                                    QString::fromStdString(info.serialNumber),
                                    QString::fromStdString(info.cameraId)));
    dialog->show();
}

void SpanletDialog::onFeatureTreeClosed() {
    if (const auto tree = m_camerasOfTrees.extract(sender()))
        m_bandwidthColumn->reloadValue(tree.mapped());
}

void SpanletDialog::onSettingsButtonClicked() {
    // A second one would show values that the first one is about to replace.
    for (SettingsDialog* open : findChildren<SettingsDialog*>()) {
        if (open->isVisible()) {
            bringToFront(*open);
            return;
        }
    }
    auto* dialog = new SettingsDialog(m_autoAdjustPacketSize, m_settings, this);
    connect(dialog, &SettingsDialog::activateAutoAdjustPacketsize, this,
            &SpanletDialog::onAutoAdjustPacketsize);
    connect(dialog, &SettingsDialog::settingsSaved, this, &SpanletDialog::settingsSaved);
    dialog->show();
}

void SpanletDialog::onSupportButtonClicked() {
    (new SupportDialog(m_settings, this))->show();
}

void SpanletDialog::onAboutButtonClicked() {
    const QStringList lines{
        tr("Spanlet is a Qt application using the OrvCPP API."),
        QString(),
        tr("Version: ") + QStringLiteral(SPANLET_VERSION),
        tr("Orv API Version: ") + QString::fromStdString(m_controller->getSdkVersion()),
        QString(),
        tr("Copyright (c) 2026 The Spanlet authors. BSD 3-Clause License."),
    };
    QMessageBox::about(this, tr("About Orvia Spanlet"), lines.join(QLatin1Char('\n')));
}

void SpanletDialog::onAutoAdjustPacketsize(bool state) {
    m_autoAdjustPacketSize = state;
}

void SpanletDialog::onAutoSetButtonClicked() {
    using namespace SettingsKeys;
    const WaitCursor waiting;
    const std::string interfaceId = m_form->comboInterface->currentText().toStdString();
    const OrvTransportLayerType type = m_controller->getInterfaceType(interfaceId);
    const bool isUsb = type == OrvTransportLayerTypeU3V;
    if (isUsb || type == OrvTransportLayerTypeGEV) {
        m_controller->autoSetInterface(interfaceId, interfaceIndex(), m_autoAdjustPacketSize,
                                       fraction(*m_settings, isUsb ? interfaceUsb : interfaceGigE),
                                       fraction(*m_settings, isUsb ? cameraUsb : cameraGigE));
        emit autoSetInterfaceFinished();
    } else {
        logError("Autoset not supported for interface: " + interfaceId);
    }
}

void SpanletDialog::onAutoSetCameraButtonClicked() {
    const WaitCursor waiting;
    const QModelIndex current = m_form->treeViewCameras->currentIndex();
    if (const auto camera = m_model->cameraHandler(current)) {
        const QString interfaceId =
            current.parent().siblingAtColumn(CameraListModel::NameColumn).data().toString();
        const bool isGigE =
            m_controller->getInterfaceType(interfaceId.toStdString()) == OrvTransportLayerTypeGEV;
        const double margin =
            fraction(*m_settings, isGigE ? SettingsKeys::cameraGigE : SettingsKeys::cameraUsb);
        autoSetCamera(*camera, margin);
        emit autoSetCameraFinished(current);
    }
}

void SpanletDialog::end() {
    for (FeatureTreeDialog* dialog : findChildren<FeatureTreeDialog*>()) {
        // A closed one is waiting for its deletion.
        if (dialog->isVisible())
            dialog->close();
    }
    qDeleteAll(findChildren<SettingsDialog*>());
    endBenchmark();
}

void SpanletDialog::done(int /*code*/) {
    end();
    QDialog::done(autoAdjustResult());
}

void SpanletDialog::showEvent(QShowEvent* event) {
    emit dialogIsReadyLoaded();
    if (!event->spontaneous()) {
        const QSize available = screen()->availableSize();
        const int most = available.height() - style()->pixelMetric(QStyle::PM_TitleBarHeight);
        resize(size()
                   .expandedTo(sizeOfContents().boundedTo(available))
                   .boundedTo({QWIDGETSIZE_MAX, most}));
    }
    QDialog::showEvent(event);
}

QSize SpanletDialog::sizeOfContents() const {
    const QTreeView* tree = m_form->treeViewCameras;
    const QHeaderView* header = tree->header();
    int columns = 2 * tree->frameWidth() + tree->verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < header->count(); ++column)
        columns += header->sectionResizeMode(column) == QHeaderView::Stretch
                       ? header->minimumSectionSize()
                       : header->sectionSize(column);
    const QMargins margins = m_form->scrollAreaWidgetContents->layout()->contentsMargins();
    return m_form->scrollAreaWidgetContents->minimumSizeHint().expandedTo(
        {columns + margins.left() + margins.right(), 0});
}

void SpanletDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        updateRefreshIcon();
    if (event->type() == QEvent::FontChange && m_model != nullptr)
        fitTexts();
    QDialog::changeEvent(event);
}

void SpanletDialog::closeEvent(QCloseEvent* event) {
    end();
    // A dialog that is not visible closes without done().
    setResult(autoAdjustResult());
    QDialog::closeEvent(event);
}
