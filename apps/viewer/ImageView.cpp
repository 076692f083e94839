// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ImageView.h"

#include <QPainter>

namespace viewer {

ImageView::ImageView(QWidget* parent) : QWidget(parent) {
    setMinimumSize(320, 240);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ImageView::showImage(const QImage& image) {
    m_image = image;
    update();
}

void ImageView::showMessage(const QString& title, const QString& explanation) {
    m_image = QImage();
    m_title = title;
    m_explanation = explanation;
    setAccessibleDescription(title);
    update();
}

bool ImageView::hasImage() const {
    return !m_image.isNull();
}

QSize ImageView::sizeHint() const {
    return {800, 600};
}

void ImageView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (hasImage())
        paintImage(painter);
    else
        paintMessage(painter);
}

void ImageView::paintImage(QPainter& painter) const {
    // Neutral grey around the image, so that its brightness can be judged.
    painter.fillRect(rect(), QColor(0x26, 0x26, 0x26));
    QRect target(QPoint(), m_image.size().scaled(size(), Qt::KeepAspectRatio));
    target.moveCenter(rect().center());
    painter.drawImage(target, m_image);
}

void ImageView::paintMessage(QPainter& painter) const {
    painter.fillRect(rect(), palette().color(QPalette::Base));
    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    const int titleHeight = QFontMetrics(titleFont).height();
    const QRect upper = rect().adjusted(16, 0, -16, -height() / 2);
    const QRect lower = rect().adjusted(16, height() / 2 + titleHeight / 3, -16, 0);

    QColor color = palette().color(QPalette::Text);
    color.setAlphaF(0.8);
    painter.setPen(color);
    painter.setFont(titleFont);
    painter.drawText(upper, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap, m_title);
    color.setAlphaF(0.6);
    painter.setPen(color);
    painter.setFont(font());
    painter.drawText(lower, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_explanation);
}

} // namespace viewer
