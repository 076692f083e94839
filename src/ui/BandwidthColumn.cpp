// SPDX-License-Identifier: BSD-3-Clause
#include "ui/BandwidthColumn.h"

#include "engine/CameraHandler.h"
#include "engine/SystemController.h"
#include "ui/BandwidthSliderWidget.h"
#include "ui/CameraListModel.h"
#include "ui/InterfaceSpeedWidget.h"
#include "ui/SettingsKeys.h"

#include <QEvent>
#include <QPersistentModelIndex>
#include <QStyle>
#include <QTreeView>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::uint64_t bitsPerMegabyte = 8'000'000;

QModelIndex bandwidthCell(const QModelIndex& row) {
    return row.siblingAtColumn(CameraListModel::BandwidthColumn);
}

QString nameOf(const QModelIndex& row) {
    return row.siblingAtColumn(CameraListModel::NameColumn).data().toString();
}

int maximumOf(const QModelIndex& interfaceRow) {
    constexpr quint64 most = std::numeric_limits<int>::max();
    return static_cast<int>(
        std::min<quint64>(bandwidthCell(interfaceRow).data().toULongLong(), most));
}

/// Event filter that makes a row current when a part of its widget is clicked, and a camera's row
/// also when a part gets the keyboard focus. For an interface's row the focus would change the
/// selected interface.
class RowSelector : public QObject {
public:
    RowSelector(QTreeView& tree, const QModelIndex& row, bool followsFocus, QWidget& widget)
        : QObject(&widget), m_tree(tree), m_row(row), m_followsFocus(followsFocus) {
        widget.installEventFilter(this);
        for (QWidget* part : widget.findChildren<QWidget*>())
            part->installEventFilter(this);
    }

    bool eventFilter(QObject* /*part*/, QEvent* event) override {
        const bool isTurnedTo = event->type() == QEvent::MouseButtonPress ||
                                (event->type() == QEvent::FocusIn && m_followsFocus);
        if (isTurnedTo && m_tree.currentIndex() != m_row)
            m_tree.setCurrentIndex(m_row);
        return false;
    }

private:
    QTreeView& m_tree;
    const QPersistentModelIndex m_row;
    const bool m_followsFocus;
};

} // namespace

BandwidthColumn::BandwidthColumn(QTreeView& tree, CameraListModel& model,
                                 std::shared_ptr<SystemController> controller,
                                 const QSettings& settings, QObject* parent)
    : QObject(parent), m_tree(tree), m_model(model), m_controller(std::move(controller)),
      m_settings(settings) {}

void BandwidthColumn::clear() {
    const auto remove = [this](const QModelIndex& row) {
        QWidget* widget = m_tree.indexWidget(bandwidthCell(row));
        if (widget == nullptr)
            return;
        // Else the view would lay out the deleted widget once more.
        m_tree.setIndexWidget(bandwidthCell(row), nullptr);
        delete widget;
    };
    for (const QModelIndex& interfaceRow : interfaceRows()) {
        for (const QModelIndex& camera : m_model.childIndexes(interfaceRow))
            remove(camera);
        remove(interfaceRow);
    }
}

void BandwidthColumn::fill(const std::function<void()>& afterEachCamera) {
    for (const QModelIndex& interfaceRow : interfaceRows()) {
        placeBar(interfaceRow);
        for (const QModelIndex& camera : m_model.childIndexes(interfaceRow)) {
            placeSlider(camera);
            afterEachCamera();
        }
    }
}

void BandwidthColumn::showSelected(QWidget& widget, bool isSelected) {
    // The highlight of Windows' own style is so pale that texts keep their colour on it.
    const bool isPale = widget.style()->inherits("QWindowsVistaStyle");
    widget.setBackgroundRole(isSelected && !isPale ? QPalette::Highlight : QPalette::NoRole);
}

void BandwidthColumn::place(const QModelIndex& row, QWidget& widget) {
    const QModelIndex cell = bandwidthCell(row);
    widget.setEnabled(m_model.flags(cell).testFlag(Qt::ItemIsEnabled));
    showSelected(widget, m_tree.selectionModel()->isSelected(cell));
    m_tree.setIndexWidget(cell, &widget);
    const bool isCamera = m_model.cameraHandler(row) != nullptr;
    new RowSelector(m_tree, row, isCamera, widget);
}

void BandwidthColumn::placeBar(const QModelIndex& interfaceRow) {
    auto* bar = new InterfaceSpeedWidget(maximumOf(interfaceRow), &m_tree);
    connect(bar, &InterfaceSpeedWidget::maxBandwidthChanged, this,
            [this, row = QPersistentModelIndex(interfaceRow)](int bandwidth) {
                overwriteMaximum(row, bandwidth);
            });
    place(interfaceRow, *bar);
}

void BandwidthColumn::placeSlider(const QModelIndex& camera) {
    const auto handler = m_model.cameraHandler(camera);
    auto* slider = new BandwidthSliderWidget(handler->getFeatureController(), &m_tree);
    const QPersistentModelIndex row(camera);
    connect(slider, &BandwidthSliderWidget::valueChanged, this,
            [this, row](int bandwidth) { showUsage(row, bandwidth); });
    connect(slider, &BandwidthSliderWidget::lockChanged, this, [this, handler](bool locked) {
        handler->setLocked(locked);
        emit lockChanged();
    });
    place(camera, *slider);
    // Locks a camera without a bandwidth feature. One that could not be opened has no features.
    slider->initialize();
    showUsage(camera, slider->value());
}

void BandwidthColumn::showUsage(const QModelIndex& camera, int bandwidth) {
    if (InterfaceSpeedWidget* bar = barOf(camera.parent()))
        bar->setValue(camera.row(), marginOf(camera.parent()), bandwidth);
}

void BandwidthColumn::overwriteMaximum(const QModelIndex& interfaceRow, int bandwidth) {
    m_controller->setMaxBandwidth(nameOf(interfaceRow).toStdString(),
                                  static_cast<std::uint64_t>(bandwidth) * bitsPerMegabyte);
    m_model.readInterfaceSpeed(interfaceRow);
    emit maximumChanged();
}

void BandwidthColumn::reloadInterface(const QString& interfaceId) {
    for (const QModelIndex& interfaceRow : interfaceRows()) {
        if (nameOf(interfaceRow) != interfaceId)
            continue;
        for (const QModelIndex& camera : m_model.childIndexes(interfaceRow)) {
            const auto handler = m_model.cameraHandler(camera);
            // Auto Set has skipped the others.
            if (handler->isOpened() && !handler->isLocked())
                reloadCamera(camera);
        }
    }
}

void BandwidthColumn::reloadCamera(const QModelIndex& camera) {
    BandwidthSliderWidget* slider = sliderOf(camera);
    if (slider == nullptr)
        return;
    showUsage(camera, slider->getValue());
    slider->updateColor(m_model.cameraHandler(camera)->getAutosetStatus());
}

void BandwidthColumn::reloadValue(const std::string& cameraId) {
    for (const QModelIndex& interfaceRow : interfaceRows()) {
        for (const QModelIndex& camera : m_model.childIndexes(interfaceRow)) {
            BandwidthSliderWidget* slider = sliderOf(camera);
            if (slider && m_model.cameraHandler(camera)->getCameraInfo().cameraId == cameraId)
                showUsage(camera, slider->getValue());
        }
    }
}

void BandwidthColumn::updateMaximum(const QModelIndex& row) {
    const bool isInterface = m_model.hasChildren(row.siblingAtColumn(CameraListModel::NameColumn));
    InterfaceSpeedWidget* bar = isInterface ? barOf(row) : nullptr;
    if (bar == nullptr)
        return;
    bar->setMaxBandwidth(maximumOf(row));
    bar->updateColor(marginOf(row));
}

void BandwidthColumn::updateMargins() {
    for (const QModelIndex& interfaceRow : interfaceRows()) {
        if (InterfaceSpeedWidget* bar = barOf(interfaceRow))
            bar->updateColor(marginOf(interfaceRow));
    }
}

QModelIndexList BandwidthColumn::interfaceRows() const {
    QModelIndexList rows;
    for (const QModelIndex& type : m_model.childIndexes())
        rows += m_model.childIndexes(type);
    return rows;
}

InterfaceSpeedWidget* BandwidthColumn::barOf(const QModelIndex& interfaceRow) const {
    return qobject_cast<InterfaceSpeedWidget*>(m_tree.indexWidget(bandwidthCell(interfaceRow)));
}

BandwidthSliderWidget* BandwidthColumn::sliderOf(const QModelIndex& camera) const {
    return qobject_cast<BandwidthSliderWidget*>(m_tree.indexWidget(bandwidthCell(camera)));
}

int BandwidthColumn::marginOf(const QModelIndex& interfaceRow) const {
    const bool isUsb = nameOf(interfaceRow).contains(QStringLiteral("USB"));
    return SettingsKeys::readMargin<int>(m_settings, isUsb ? SettingsKeys::interfaceUsb
                                                           : SettingsKeys::interfaceGigE);
}
