// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the value of a catalogue key may look like, in words and as a check.
#pragma once

#include "catalogue/CatalogueKeys.h"

#include <optional>
#include <string>
#include <vector>

// The items between commas, without the blanks around them; one empty item for an empty value.
std::vector<std::string> splitItems(const std::string &value);
// A decimal number without superfluous signs and zeros.
std::optional<int> decimalNumber(const std::string &text);

// Such as "a number from 1 to 8". For errors and for docs/catalogue.md.
std::string describeForm(const CatalogueKey &key);
// `sensors`: the names that the catalogue may use.
bool fitsForm(const CatalogueKey &key, const std::vector<std::string> &items,
              const std::vector<std::string> &sensors);
