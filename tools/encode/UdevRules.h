// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rules by which udev lets the user at the screen use the devices of the catalogue. Without them the
// nodes belong to root alone.
#pragma once

#include "tools/encode/CatalogueSource.h"

#include <string>

// `group`: may use the devices too; empty for none.
std::string udevRules(const EncodedCatalogue &catalogue, const std::string &group = {});
