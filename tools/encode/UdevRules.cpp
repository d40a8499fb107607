// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/UdevRules.h"

// As sysfs writes ids, without the 0x in front.
static std::string alternatives(const std::vector<std::string> &ids)
{
    std::string all;
    for (const std::string &id : ids)
        all += (all.empty() ? "" : "|") + id.substr(2);
    return all;
}

std::string udevRules(const EncodedCatalogue &catalogue, const std::string &group)
{
    const std::string forGroup = group.empty() ? std::string() : ", GROUP=\"" + group + "\"";
    return "# Made from the catalogue. Whoever sits at the screen may use these devices" +
           (group.empty() ? std::string()
                          : ";\n# so may the group " + group + ", for machines without seats") +
           ".\nSUBSYSTEM==\"hidraw\", ATTRS{idVendor}==\"" + alternatives(catalogue.vendors) +
           "\", ATTRS{idProduct}==\"" + alternatives(catalogue.products) + "\", MODE=\"0660\"" + forGroup +
           ", TAG+=\"uaccess\"\n";
}
