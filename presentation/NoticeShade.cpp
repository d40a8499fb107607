// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/NoticeShade.h"

#include <QPainter>

namespace
{

constexpr QRgb Dim = 0x78000000;
constexpr QRgb ShadowRing = 0x0b000000; // next to the notice all rings lie over each other
constexpr int ShadowRings = 14;
constexpr int RingStep = 2;
constexpr int ShadowDrop = 8;
constexpr int NoticeRadius = 12;

} // namespace

NoticeShade::NoticeShade(QWidget *window, const QRect &notice)
    : QWidget(window), notice_(window->mapFromGlobal(notice.topLeft()), notice.size())
{
    setObjectName(QStringLiteral("noticeShade"));
    resize(window->size());
    show();
    raise();
}

bool NoticeShade::covers(const QWidget *window)
{
    return window->findChild<NoticeShade *>(QString(), Qt::FindDirectChildrenOnly) != nullptr;
}

void NoticeShade::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgba(Dim));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(ShadowRing));
    for (int ring = 1; ring <= ShadowRings; ++ring) {
        const int grown = ring * RingStep;
        painter.drawRoundedRect(notice_.adjusted(-grown, -grown, grown, grown).translated(0, ShadowDrop),
                                NoticeRadius + grown, NoticeRadius + grown);
    }
}
