// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/FeatureValue.h"
#include "features/StepGrid.h"
#include "ui/features/FloatScale.h"

#include <QString>
#include <QVector>
#include <QWidget>

#include <optional>

class LongSpinBox;
class QKeyEvent;
class QLineEdit;
class QSlider;
class QValidator;
class QwtSlider;

/// Editor of one feature in a row of the feature tree: the widgets that suit its data type and
/// representation. Bound to the GUI thread.
///
/// Characters that no valid text has are refused, and a tool tip then tells what can be typed. So
/// it does when Return is pressed on a text that is not complete; the editor stays open.
///
/// Return commits, Escape leaves the value as it is, Tab moves from one widget to the next. Leaving
/// the editor commits, too, moving within it does not. Whatever is chosen by mouse is committed at
/// once; keys and the wheel only browse, so that passing over a value does not write it.
class DelegateWidget : public QWidget {
    Q_OBJECT

public:
    /// Whether a feature of that kind can be edited.
    static bool canEdit(const FeatureInfo& info);
    /// Whether it is a number whose unit is to be shown behind it.
    static bool hasUnit(const FeatureInfo& info);

    /// Empty for a feature that cannot be edited.
    explicit DelegateWidget(FeatureInfo info, QWidget* parent = nullptr);
    ~DelegateWidget() override;

    /// The value to edit; false for a command.
    const FeatureValue& value() const { return m_value; }
    /// The value that the user chose: value() while nothing was touched, true for a command whose
    /// button was pressed; nothing while a text is not complete.
    std::optional<FeatureValue> input() const;

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
    void onEditingFinished();
    void onEditingFinishedDouble();
    void onEditingFinishedHex();
    void onEditingFinishedIP();
    void onSliderMoved(int position);
    void onDoubleSliderMoved(double value);
    /// Shows a value; what was edited and not committed is lost.
    void setValue(const FeatureValue& value);
    /// Takes over the value that the camera has now. Shows it, unless another one was typed.
    void refreshValue(const FeatureValue& value);
    /// Tells the value of the widget that sent the signal, and that editing is finished, unless
    /// that is a slider, which may be dragged on.
    void saveEditorData();

protected:
    bool focusNextPrevChild(bool next) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// How a value is written and read where it is edited as a text.
    struct TextForm {
        QString (*show)(const FeatureValue& value);
        std::optional<FeatureValue> (*read)(const QString& text);
    };
    /// One row of the table of editors.
    struct Composition {
        bool (*suits)(const FeatureInfo& info);
        void (DelegateWidget::*build)();
    };

    static const Composition* compositionFor(const FeatureInfo& info);

    void buildCommand();
    void buildBoolean();
    void buildEnumeration();
    void buildString();
    void buildHex();
    void buildIp();
    void buildMac();
    void buildInteger();
    void buildFloat();
    /// Adds a widget to the row, in the order of the Tab key.
    template <class Widget> Widget* add(Widget* part);
    void addLine(const TextForm& form, QValidator* validator);
    void addFloatSlider();

    std::optional<FeatureValue> valueOf(const QWidget& part) const;
    void showText(const FeatureValue& value);
    void tidyText();
    void moveSlider();
    void tell(const FeatureValue& value);
    void showHintWhenRejecting(const QLineEdit& line);
    void showHint();
    bool onKeyPressed(QWidget& part, const QKeyEvent& event);
    void release(QWidget& slider, QEvent& event);
    bool holdsFocus() const;

    FeatureInfo m_info;
    FeatureValue m_value;
    /// What the line edit was last made to show: its text may have fewer digits.
    FeatureValue m_shown;
    const TextForm* m_form = nullptr;
    /// What can be typed.
    QString m_hint;
    StepGrid m_grid;
    FloatScale m_scale;

    QVector<QWidget*> m_parts;
    /// The part that holds the value and has the focus at first.
    QWidget* m_holder = nullptr;
    QLineEdit* m_line = nullptr;
    LongSpinBox* m_spin = nullptr;
    QSlider* m_slider = nullptr;
    QwtSlider* m_floatSlider = nullptr;
};
