// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/FeatureValue.h"

#include <QString>
#include <QWidget>

#include <optional>

/// Editor of one feature in a row of the feature tree: the widgets that suit its data type and
/// representation. Bound to the GUI thread.
///
/// Return commits, Escape leaves the value as it is, Tab moves from one widget to the next. Leaving
/// the editor commits, too, moving within it does not. Whatever is chosen by mouse is committed at
/// once; keys and the wheel only browse, so that passing over a value does not write it.
class DelegateWidget : public QWidget {
    Q_OBJECT

public:
    /// Whether a feature of that kind can be edited.
    static bool canEdit(const FeatureInfo& info);

    /// Empty for a feature that cannot be edited.
    explicit DelegateWidget(FeatureInfo info, QWidget* parent = nullptr);
    ~DelegateWidget() override;

    /// The value to edit; false for a command.
    const FeatureValue& value() const { return m_value; }
    /// The value that the user chose: value() while nothing was touched, true for a command whose
    /// button was pressed; nothing while a text is not complete.
    std::optional<FeatureValue> input() const;

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
    void onEditingFinished();
    void onEditingFinishedDouble();
    void onEditingFinishedHex();
    void onEditingFinishedIP();
    void onSliderMoved(int position);
    void onDoubleSliderMoved(double value);
    /// Shows a value; what was edited and not committed is lost.
    void setValue(const FeatureValue& value);
    /// Tells the value of the widget that sent the signal, and that editing is finished.
    void saveEditorData();

private:
    FeatureValue m_value;
};
