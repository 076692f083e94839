// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/BandwidthLimit.h"

#include <QString>
#include <QWidget>

#include <cstdint>
#include <memory>

class FeatureController;
enum class AutosetStatus : std::int32_t;
namespace Ui {
class BandwidthSliderWidget;
}

/// Shows and sets the bandwidth limit of one camera in MB/s (1,000,000 bytes per second), by a
/// slider and a spin box in step, shows the outcome of Auto Set by the colour of the slider's
/// handle, and lets the user lock the camera. The camera is read when the widget is initialised or
/// reloaded, and written once for each value that the user chooses, after a drag on release. Bound
/// to the GUI thread.
class BandwidthSliderWidget : public QWidget {
    Q_OBJECT

public:
    explicit BandwidthSliderWidget(std::shared_ptr<FeatureController> features,
                                   QWidget* parent = nullptr);
    ~BandwidthSliderWidget() override;

    /// Finds the camera's bandwidth feature, switches it on, and shows its range and value. A
    /// camera without one is locked and cannot be used. To be called once, when the signals are
    /// connected.
    void initialize();
    /// The value of the spin box, in MB/s: its minimum while a dash is shown.
    int value() const;

signals:
    /// The camera was given another bandwidth by the user: the one now in effect, in MB/s.
    void valueChanged(int value);
    void lockChanged(bool locked);

public slots:
    /// Keeps slider and spin box in step, whichever of them sends it.
    void onValueChanged();
    /// Gives the camera the value shown, if it has another.
    void onEditFinished();
    /// Gives the camera a bandwidth, in MB/s, and shows the one then in effect.
    void setValue(int value);
    void changeLock(bool locked);
    /// Reads the camera's bandwidth, shows it, and returns it in MB/s.
    int getValue();
    void updateColor(AutosetStatus status);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    static constexpr int unknown = -1;

    void connectWidgets();
    void fitSpinBox();
    void updateLockIcon();
    void lockOut();
    void setRange(const FeatureInfo& feature);
    /// Shows the limit of the camera; a dash when it is 0, since it could not be read.
    void showBandwidth(std::int64_t bytesPerSecond);
    void showDash(bool shown);
    void resetColor();
    void resetToolTips();
    void setSliderStyle(const QString& style);
    /// Shows the value again. Returns whether another text was being typed.
    bool discardTyping();

    std::unique_ptr<Ui::BandwidthSliderWidget> m_form;
    std::shared_ptr<FeatureController> m_features;
    BandwidthLimit m_limit;
    /// The slider's style without the colour of a status.
    QString m_sliderStyle;
    /// The value last loaded from the camera or given to it, in MB/s; -1 when it is unknown.
    int m_settledValue = unknown;
};
