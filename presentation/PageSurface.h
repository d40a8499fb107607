// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the pages of a device have in common: their size, the surface they stand on, and the flag that
// says that a page fills its widgets from a record, so that no change handler takes this for an edit.
#pragma once

#include <QWidget>
#include <atomic>

constexpr QSize DevicePageSize{883, 630};

// A page that is its surface. `pictures` names the page's picture folder.
class PageSurface : public QWidget
{
public:
    PageSurface(const QString &name, const QString &pictures, QWidget *parent);
};

class PageFilling
{
public:
    explicit PageFilling(std::atomic<bool> &flag) : busy_(flag) { busy_ = true; }
    ~PageFilling() { busy_ = false; }
    PageFilling(const PageFilling &) = delete;
    PageFilling &operator=(const PageFilling &) = delete;

private:
    std::atomic<bool> &busy_;
};
