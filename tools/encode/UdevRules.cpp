// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/UdevRules.h"

#include <algorithm>
#include <vector>

namespace
{

// "0x1209" and "1209" become "1209", as sysfs writes it; empty for a malformed id.
std::string sysfsId(std::string item)
{
    item.erase(
        std::remove_if(item.begin(), item.end(), [](char c) { return c == ' ' || c == '\t' || c == '\r'; }),
        item.end());
    if (item.compare(0, 2, "0x") == 0 || item.compare(0, 2, "0X") == 0)
        item.erase(0, 2);
    std::transform(item.begin(), item.end(), item.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    const bool isId = item.size() == 4 && item.find_first_not_of("0123456789abcdef") == std::string::npos;
    return isId ? item : std::string();
}

bool endsWith(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Without repetitions, in the order of the file.
void addIds(std::vector<std::string> &ids, const std::string &value)
{
    for (std::size_t start = 0; start <= value.size();) {
        const std::size_t comma = std::min(value.find(',', start), value.size());
        const std::string id = sysfsId(value.substr(start, comma - start));
        if (!id.empty() && std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
        start = comma + 1;
    }
}

std::string alternatives(const std::vector<std::string> &ids)
{
    std::string all;
    for (const std::string &id : ids)
        all += (all.empty() ? "" : "|") + id;
    return all;
}

} // namespace

UdevRules udevRules(std::istream &source, const std::string &group)
{
    std::vector<std::string> vendors;
    std::vector<std::string> products;
    for (std::string line; std::getline(source, line);) {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos || line.front() == ';')
            continue;
        const std::string key = line.substr(0, line.find_last_not_of(" \t", equals - 1) + 1);
        if (key == "VID")
            addIds(vendors, line.substr(equals + 1));
        else if (endsWith(key, "_PID"))
            addIds(products, line.substr(equals + 1));
    }
    if (vendors.empty() || products.empty())
        return {{}, "names no vendor or no product"};
    const std::string forGroup = group.empty() ? std::string() : ", GROUP=\"" + group + "\"";
    return {"# Made from the catalogue. Whoever sits at the screen may use these devices" +
                (group.empty() ? std::string()
                               : ";\n# so may the group " + group + ", for machines without seats") +
                ".\nSUBSYSTEM==\"hidraw\", ATTRS{idVendor}==\"" + alternatives(vendors) +
                "\", ATTRS{idProduct}==\"" + alternatives(products) + "\", MODE=\"0660\"" + forGroup +
                ", TAG+=\"uaccess\"\n",
            {}};
}
