// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/language/CompanyLabels.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <iterator>

namespace
{

constexpr int MaxDepth = 16; // a label file has three levels
constexpr const char *CompanyElements[] = {"CompanyName", "CompanyNameCn", "CompanyWebcn", "CompanyWeben"};

class LabelReader
{
public:
    explicit LabelReader(const QByteArray &xml) : xml_(xml) {}

    QStringList read(QString *error)
    {
        while (!xml_.atEnd()) {
            const QXmlStreamReader::TokenType token = xml_.readNext();
            if (token == QXmlStreamReader::StartElement)
                startElement();
            else if (token == QXmlStreamReader::EndElement)
                --depth_;
        }
        if (error != nullptr)
            *error = xml_.errorString();
        return xml_.hasError() ? QStringList() : labels_;
    }

private:
    void startElement()
    {
        ++depth_;
        if (depth_ == 1 && xml_.name() != QLatin1String("Profile"))
            xml_.raiseError(QStringLiteral("Not a labels file"));
        else if (depth_ > MaxDepth)
            xml_.raiseError(QStringLiteral("Nested too deep"));
        else if (depth_ == 2)
            inEnglish_ = xml_.name() == QLatin1String("English");
        else if (depth_ == 3 && inEnglish_ && isCompanyElement())
            takeLabel();
    }
    bool isCompanyElement() const
    {
        return std::any_of(std::begin(CompanyElements), std::end(CompanyElements),
                           [this](const char *name) { return xml_.name() == QLatin1String(name); });
    }
    void takeLabel()
    {
        labels_ << xml_.readElementText(); // also reads the end element
        --depth_;
    }

    QXmlStreamReader xml_;
    QStringList labels_;
    int depth_ = 0;
    bool inEnglish_ = false;
};

} // namespace

QStringList readCompanyLabels(const QByteArray &xml, QString *error) { return LabelReader(xml).read(error); }
