// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// "Level.ini" in the user's folder of the sensor page: the number of DPI stages, and nothing else. Any
// thread.
#pragma once

#include <QString>

QString levelFilePath();

// 1 when there is no file or its first line is empty. The number is not checked against the device's stages.
int LoadDpiStageCount();
// False when it could not be written; the file is then unchanged.
bool SaveDpiStageCount(int count);
