// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/CatalogueSource.h"

#include "tools/encode/KeyForms.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>

namespace
{

using Items = std::vector<std::string>;

constexpr std::size_t LineLimit = 1000;

std::string trimmed(const std::string &text)
{
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string base64(const std::string &bytes)
{
    constexpr char Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (std::size_t j = i; j < i + 3; ++j)
            group = group << 8 | (j < bytes.size() ? uint8_t(bytes[j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            out += i + j <= bytes.size() ? Digits[group >> (18 - 6 * j) & 63U] : '=';
    }
    return out;
}

std::string joined(const Items &items, bool encoded)
{
    std::string out;
    for (const std::string &item : items)
        out += (&item == &items.front() ? "" : ",") + (encoded ? base64(item) : item);
    return out;
}

bool isPrintableAscii(const std::string &line)
{
    return std::all_of(line.begin(), line.end(),
                       [](char c) { return c == '\t' || (uint8_t(c) >= 32 && uint8_t(c) <= 126); });
}

struct Value {
    Items items;
    int line;
};

// The values of one section, for what they say together. The needed ones are there and in form.
class ModelCheck
{
public:
    ModelCheck(const std::map<std::string, Value> &values, const SensorHeader &header)
        : values_(values), header_(header)
    {
    }

    bool hasAllColors() const
    {
        return values_.at("DPIColor").items.size() >= 3 * std::size_t(number("DPIMaxGrade", 0));
    }
    bool hasRangesOfItsSensor() const
    {
        return countsEachDpi(sensor(), values_.at("DPIRange").items, header_);
    }
    const std::string &sensor() const { return values_.at("Sensor").items.front(); }
    bool hasDpisInRange() const
    {
        const std::size_t count = values_.at("DPIGrade").items.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (!isInRange(number("DPIGrade", i)))
                return false;
        }
        return true;
    }

private:
    int number(const char *key, std::size_t item) const
    {
        return decimalNumber(values_.at(key).items.at(item)).value_or(0);
    }
    bool isInRange(int dpi) const
    {
        for (std::size_t i = 0; i + 3 <= values_.at("DPIRange").items.size(); i += 3) {
            const int min = number("DPIRange", i);
            if (dpi >= min && dpi <= number("DPIRange", i + 1) &&
                (dpi - min) % number("DPIRange", i + 2) == 0)
                return true;
        }
        return false;
    }

    const std::map<std::string, Value> &values_;
    const SensorHeader &header_;
};

std::string inLowerCase(std::string id)
{
    std::transform(id.begin(), id.end(), id.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return id;
}

class Encoder
{
public:
    explicit Encoder(const SensorHeader &header) : header_(header) {}

    // Both are false when they have failed; error() tells why.
    bool take(const std::string &line)
    {
        ++line_;
        if (line.size() > LineLimit)
            return fail(line_, "is longer than " + std::to_string(LineLimit) + " characters");
        if (line.empty() || line.front() == ';')
            return true;
        if (!isPrintableAscii(line))
            return fail(line_, "holds a character that is not ASCII");
        return line.front() == '[' ? heading(line) : value(line);
    }
    bool end()
    {
        if (section_.empty())
            return fail(0, "has no [Option]");
        if (!endSection())
            return false;
        const int models = int(mids_.size());
        if (total_.items.front() != std::to_string(models))
            return fail(total_.line, "DeviceTotal is " + total_.items.front() + ", but there are " +
                                         std::to_string(models) + " models");
        return true;
    }
    EncodedCatalogue result;

private:
    bool fail(int line, const std::string &reason)
    {
        result.errorLine = line;
        result.error = reason;
        return false;
    }

    bool heading(const std::string &line)
    {
        if (!section_.empty() && !endSection())
            return false;
        const std::string expected =
            section_.empty() ? "[Option]" : "[Drive" + std::to_string(mids_.size() + 1) + "]";
        if (line != expected)
            return fail(line_, "\"" + line + "\" stands where " + expected + " is expected");
        kind_ = section_.empty() ? CatalogueSection::Option : CatalogueSection::Model;
        section_ = line;
        sectionLine_ = line_;
        values_.clear();
        result.text += (result.text.empty() ? "" : "\n") + line + "\n";
        return true;
    }

    bool value(const std::string &line)
    {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos)
            return fail(line_, "neither [section], nor Key=Value, nor a comment");
        if (section_.empty())
            return fail(line_, "a value before the first section");
        const std::string name = trimmed(line.substr(0, equals));
        const CatalogueKey *const key = catalogueKey(name);
        if (key == nullptr)
            return fail(line_, "\"" + name + "\" is no key of the catalogue");
        if (key->section != kind_)
            return fail(line_, name + " does not belong into " + section_);
        return keep(*key, trimmed(line.substr(equals + 1)));
    }

    bool keep(const CatalogueKey &key, const std::string &text)
    {
        const std::string name(key.name);
        if (text.find_first_of("\"\\;@") != std::string::npos)
            return fail(line_, "the value of " + name + " holds one of \" \\ ; @");
        const Items items = splitItems(text);
        if (!fitsForm(key, items, header_.sensors))
            return fail(line_, name + " is \"" + text + "\", but takes " + describeForm(key));
        const auto [at, isNew] = values_.emplace(name, Value{items, line_});
        if (!isNew)
            return fail(line_, name + " stands in line " + std::to_string(at->second.line) + " already");
        result.text += name + "=" + joined(items, key.isEncoded) + "\n";
        return key.form != KeyForm::Ids || keepIds(name, items);
    }
    // What a device is follows from its product id, so that each belongs to one key.
    bool keepIds(const std::string &name, const Items &items)
    {
        const bool areVendors = name == "VID";
        for (const std::string &item : items) {
            const std::string id = inLowerCase(item);
            const auto [at, isNew] = ids_.emplace((areVendors ? "vendor " : "product ") + id, line_);
            if (!isNew) {
                std::string reason = name;
                reason.append(" has ").append(item).append(", which stands in line ");
                return fail(line_, reason.append(std::to_string(at->second)).append(" already"));
            }
            (areVendors ? result.vendors : result.products).push_back(id);
        }
        return true;
    }

    bool endSection()
    {
        for (const CatalogueKey &key : CatalogueKeys) {
            if (key.isNeeded && key.section == kind_ && values_.count(std::string(key.name)) == 0)
                return fail(sectionLine_, section_ + " lacks " + std::string(key.name));
        }
        if (kind_ == CatalogueSection::Model)
            return endModel();
        total_ = values_.at("DeviceTotal");
        return true;
    }
    bool endModel()
    {
        const Value &mid = values_.at("MID");
        const auto [at, isNew] = mids_.emplace(mid.items.front(), mid.line);
        if (!isNew)
            return fail(mid.line,
                        "MID " + at->first + " stands in line " + std::to_string(at->second) + " already");
        const ModelCheck check(values_, header_);
        if (!check.hasAllColors())
            return misfit("DPIColor");
        if (!check.hasRangesOfItsSensor())
            return fail(values_.at("DPIRange").line,
                        "DPIRange holds a DPI that the sensor " + check.sensor() + " cannot count");
        if (!check.hasDpisInRange())
            return misfit("DPIGrade");
        return true;
    }
    // A value that is in form, but not together with others of the model.
    bool misfit(const char *name)
    {
        return fail(values_.at(name).line,
                    std::string(name) + " does not hold " + describeForm(*catalogueKey(name)));
    }

    const SensorHeader &header_;
    int line_ = 0;
    std::string section_; // heading
    int sectionLine_ = 0;
    CatalogueSection kind_ = CatalogueSection::Option;
    std::map<std::string, Value> values_; // of this section
    std::map<std::string, int> mids_;     // of all models so far, with their lines
    std::map<std::string, int> ids_;      // vendors and products so far, with their lines
    Value total_;
};

} // namespace

EncodedCatalogue encodeCatalogue(std::istream &source, const SensorHeader &header)
{
    Encoder encoder(header);
    for (std::string line; std::getline(source, line);) {
        if (!encoder.take(trimmed(line)))
            return encoder.result;
    }
    encoder.end();
    return encoder.result;
}
