// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Shared by the pages of a device: size, background surface, and the busy flag of a page that fills its
// widgets from a record. Change handlers ignore changes while the flag is set.
#pragma once

#include <QWidget>
#include <atomic>

constexpr QSize DevicePageSize{883, 630};

// A page that is nothing but its surface. `pictures` names the page's picture folder, `nameKey` its
// accessible name.
class PageSurface : public QWidget
{
public:
    PageSurface(const QString &name, const QString &pictures, const char *nameKey, QWidget *parent);
};

class PageFilling
{
public:
    explicit PageFilling(std::atomic<bool> &flag) : busy_(flag), before_(flag.exchange(true)) {}
    ~PageFilling() { busy_ = before_; }
    PageFilling(const PageFilling &) = delete;
    PageFilling &operator=(const PageFilling &) = delete;

private:
    std::atomic<bool> &busy_;
    const bool before_; // set where one routine that fills calls another
};
