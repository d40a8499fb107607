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
    explicit LabelReader(const QByteArray &xml) : m_xml(xml) {}

    QStringList read(QString *error)
    {
        while (!m_xml.atEnd()) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement)
                startElement();
            else if (token == QXmlStreamReader::EndElement)
                --m_depth;
        }
        if (error != nullptr)
            *error = m_xml.errorString();
        return m_xml.hasError() ? QStringList() : m_labels;
    }

private:
    void startElement()
    {
        ++m_depth;
        if (m_depth == 1 && m_xml.name() != QLatin1String("Profile"))
            m_xml.raiseError(QStringLiteral("Not a labels file"));
        else if (m_depth > MaxDepth)
            m_xml.raiseError(QStringLiteral("Nested too deep"));
        else if (m_depth == 2)
            m_inEnglish = m_xml.name() == QLatin1String("English");
        else if (m_depth == 3 && m_inEnglish && isCompanyElement())
            takeLabel();
    }
    bool isCompanyElement() const
    {
        return std::any_of(std::begin(CompanyElements), std::end(CompanyElements),
                           [this](const char *name) { return m_xml.name() == QLatin1String(name); });
    }
    void takeLabel()
    {
        m_labels << m_xml.readElementText(); // takes the end of the element along
        --m_depth;
    }

    QXmlStreamReader m_xml;
    QStringList m_labels;
    int m_depth = 0;
    bool m_inEnglish = false;
};

} // namespace

QStringList readCompanyLabels(const QByteArray &xml, QString *error) { return LabelReader(xml).read(error); }
