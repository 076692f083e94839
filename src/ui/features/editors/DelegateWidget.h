// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/FeatureValue.h"

#include <QHBoxLayout>
#include <QString>
#include <QVector>
#include <QWidget>

#include <optional>
#include <variant>

class QKeyEvent;
class QLineEdit;

/// Editor of one feature in a row of the feature tree, the base of one class per kind of feature.
/// Bound to the GUI thread.
///
/// A line edit refuses characters that no valid text has; a tool tip then shows what can be typed,
/// and also when Return is pressed on an incomplete text, which leaves the editor open.
///
/// Return commits, Escape discards, Tab moves from one widget to the next. When the focus leaves
/// the editor, it commits. A choice by mouse is committed at once; keys and the wheel only browse,
/// so that a value that is passed on the way is not written.
class DelegateWidget : public QWidget {
    Q_OBJECT

public:
    /// Whether the feature is a number with a unit, which is shown behind it.
    static bool hasUnit(const FeatureInfo& info);

    ~DelegateWidget() override;

    /// The value to edit; false for a command.
    const FeatureValue& value() const { return m_value; }
    /// The value that the user chose: value() while nothing was touched, true for a command whose
    /// button was pressed; nothing while a text is incomplete.
    virtual std::optional<FeatureValue> input() const = 0;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The user is done with the editor.
    void editingFinished();
    void newBoolValueToSet(bool value);
    /// A string, the name of an enumeration's entry, or a float with a point.
    void newStringValueToSet(const QString& value);
    void newIntValueToSet(qint64 value);
    /// While the slider of an integer is moved; nothing is to be written yet.
    void sliderValueChanged(qint64 value);

public slots:
    // Show what was typed in the form in which the value will be shown, and move the slider there.
    void onEditingFinished() { tidy(); }
    void onEditingFinishedDouble() { tidy(); }
    void onEditingFinishedHex() { tidy(); }
    void onEditingFinishedIP() { tidy(); }
    // Show the value that a slider was moved to; for editors that have a slider.
    virtual void onSliderMoved(int /*position*/) {}
    virtual void onDoubleSliderMoved(double /*value*/) {}
    /// Shows a value and discards what was edited.
    void setValue(const FeatureValue& value);
    /// Takes the value that the camera has now. Shows it, unless the user chose another one.
    void refreshValue(const FeatureValue& value);
    /// Emits the value and editingFinished, for a part that signals that the user has chosen.
    void saveEditorData();

protected:
    /// Least width of sliders, in pixels.
    static constexpr int sliderWidth = 150;
    /// Height of buttons and boxes, in pixels: more than the usual one for a large font only.
    int partHeight() const;

    DelegateWidget(FeatureInfo info, QWidget* parent);

    const FeatureInfo& info() const { return m_info; }
    QHBoxLayout& row() const { return static_cast<QHBoxLayout&>(*layout()); }
    /// Adds a part at the end of the row. The part that was added last has the focus at first.
    template <class Part> Part* add(Part* part);
    /// Adds the slider of a number, in front of the other parts.
    template <class Slider> Slider* addSlider(Slider* slider);
    /// Shows the unit of a number at the end of the row.
    void addUnit();
    /// Keys and the wheel change the parts without their signals, which would commit.
    void browseSilently() { m_isSilent = true; }
    /// Shows what can be typed when \p line refuses a character.
    void setHint(const QString& hint, const QLineEdit& line);

    /// Shows \p value in the parts. Returns the value that counts as untouched: \p value in the
    /// feature's type.
    virtual FeatureValue show(const FeatureValue& value) = 0;
    /// Shows what was typed as the value will be shown.
    virtual void tidy() {}
    /// Return was pressed: commits a complete value.
    virtual void confirm();

private:
    void adopt(QWidget& part);
    void tell(const FeatureValue& value);
    void showHint();
    bool onKeyPressed(QWidget& part, QKeyEvent& event);
    bool release(QWidget& part, QEvent& event);
    bool browse(QWidget& part, QEvent& event);
    bool holdsFocus() const;
    bool focusNextPrevChild(bool next) override;
    void wheelEvent(QWheelEvent* event) override;

    FeatureInfo m_info;
    FeatureValue m_value;
    /// In the order of the Tab key.
    QVector<QWidget*> m_parts;
    QWidget* m_slider = nullptr;
    bool m_isSilent = false;
    QString m_hint;
};

template <class Part> Part* DelegateWidget::add(Part* part) {
    row().addWidget(part);
    m_parts.append(part);
    adopt(*part);
    setFocusProxy(part);
    return part;
}

template <class Slider> Slider* DelegateWidget::addSlider(Slider* slider) {
    row().insertWidget(0, slider);
    m_parts.prepend(slider);
    adopt(*slider);
    m_slider = slider;
    return slider;
}

/// The value as a \p Type, or its default: a feature that could not be read has another type.
template <class Type> Type valueAs(const FeatureValue& value) {
    const auto* held = std::get_if<Type>(&value);
    return held != nullptr ? *held : Type();
}
