// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Gallery: saves a picture of every state of the selection page, of the device page and of each notice,
// each under a name of its own. It needs an emulator that runs gallery.scenario. Main thread.
#pragma once

#include "tour/Script.h"

#include <QDir>
#include <functional>

class Gallery
{
public:
    Gallery(QWidget &window, const QString &folder);

    // Empty on success, else the name of the step that timed out.
    QString run();

private:
    struct Scene {
        const char *name;
        const char *devices; // to be plugged in, separated by blanks
    };

    void plug(const char *devices);
    void plugScene(const Scene &scene);
    void shootScene(const Scene &scene);
    void shootPermissionHint(const Scene &scene);
    void shootDevicePage(
        const Scene &scene, const QString &button, const std::function<void()> &more = [] {});
    void shootPanel(const char *opener, const char *name);
    void shootLights();
    void shootMacros();
    void shootNotices();
    void shootPairing();
    void closePairing();
    void shoot(const char *name);
    void save(const QString &name) const;

    QWidget &window_;
    const QDir screens_;
    QStringList plugged_;
    Script script_;
};
