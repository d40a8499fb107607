// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The macros of driver_sensor.h that name the sensors with a capability. For the program's reader, and for
// the check of the file; without Qt.
#pragma once

// In the order in which a line is searched for them.
constexpr const char *CapabilityMacros[] = {"SUPPORT_SENSOR_MODE_SEL", "SUPPORT_LOD_CAL",
                                            "SUPPORT_RIPPLE",          "SUPPORT_FIXLINE",
                                            "SUPPORT_MOTION_SYNC",     "SUPPORT_MOUSEPAD_CAL"};
