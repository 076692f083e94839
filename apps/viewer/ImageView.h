// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QImage>
#include <QWidget>

namespace viewer {

/// Shows an image as large as fits, or, without one, a title and a line of explanation.
/// Bound to the GUI thread.
class ImageView : public QWidget {
    Q_OBJECT

public:
    explicit ImageView(QWidget* parent = nullptr);

    void showImage(const QImage& image);
    /// Takes the image away.
    void showMessage(const QString& title, const QString& explanation);
    bool hasImage() const;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintImage(QPainter& painter) const;
    void paintMessage(QPainter& painter) const;

    QImage m_image;
    QString m_title;
    QString m_explanation;
};

} // namespace viewer
