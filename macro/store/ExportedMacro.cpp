// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/store/ExportedMacro.h"

#include "environment/MacroName.h"
#include "environment/SafeFile.h"
#include "keys/KeyVocabulary.h"
#include "macro/store/MacroFile.h"

#include <QDataStream>
#include <QSize>
#include <QtEndian>
#include <algorithm>

namespace macro
{

namespace
{

constexpr char Marker[] = "Taigri";
constexpr int MarkerSize = 12, NameSize = 48, CycleSize = 12;
constexpr int TextLimit = 128; // characters of a row's text
// How a stream writes an icon: the name of its engine and its pictures, each with file name, size and states.
const QString IconEngine = QStringLiteral("QPixmapIconEngine");
constexpr int IconLimit = 64; // pictures
constexpr quint32 NullText = 0xFFFFFFFF;
constexpr quint32 OffState = 1;

const QByteArray PngSignature("\x89PNG\r\n\x1A\n", 8);
constexpr int PngHeader = 13;        // bytes of the first chunk's data
constexpr quint32 PngSizeMost = 512; // pixels
constexpr QChar PressField(0x3000);  // "0" and its NUL, read as one character

// Reads items from the front. After the first one that is not there every item is empty, and ok() is false.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes) : bytes_(bytes) {}
    bool ok() const { return ok_; }
    void fail() { ok_ = false; }
    bool startsWith(const QByteArray &text) const { return bytes_.mid(at_, text.size()) == text; }

    QByteArray take(quint32 size)
    {
        ok_ = ok_ && size <= quint32(bytes_.size() - at_);
        if (!ok_)
            return {};
        at_ += int(size);
        return bytes_.mid(at_ - int(size), int(size));
    }
    quint32 number()
    {
        const QByteArray bytes = take(4);
        return ok_ ? qFromBigEndian<quint32>(bytes.constData()) : 0;
    }
    QString text(quint32 most)
    {
        const quint32 size = number();
        return size == NullText ? QString() : characters(size, most);
    }
    QString characters(quint32 size, quint32 most)
    {
        ok_ = ok_ && size % 2 == 0 && size / 2 <= most;
        const QByteArray bytes = ok_ ? take(size) : QByteArray();
        QString text;
        for (int i = 0; i + 1 < bytes.size(); i += 2)
            text += QChar(qFromBigEndian<quint16>(bytes.constData() + i));
        return text;
    }
    // A field of fixed length, up to its first NUL.
    QByteArray field(quint32 size)
    {
        ok_ = ok_ && number() == size;
        const QByteArray bytes = ok_ ? take(size) : QByteArray();
        return bytes.left(int(qstrnlen(bytes.constData(), uint(bytes.size()))));
    }

private:
    const QByteArray bytes_;
    int at_ = 0;
    bool ok_ = true;
};

// ---- Pictures -----------------------------------------------------------------------------------

// Width and height of the picture, whose data is not looked at.
QSize skipPng(Reader &reader)
{
    if (reader.take(quint32(PngSignature.size())) != PngSignature)
        reader.fail();
    QSize size;
    QByteArray type;
    while (reader.ok() && type != "IEND") {
        const quint32 length = reader.number();
        type = reader.take(4);
        if (size.isEmpty() && (type != "IHDR" || length != PngHeader))
            reader.fail();
        const QByteArray data = reader.take(length);
        reader.take(4); // the checksum
        if (!reader.ok() || !size.isEmpty())
            continue;
        const auto width = qFromBigEndian<quint32>(data.constData());
        const auto height = qFromBigEndian<quint32>(data.constData() + 4);
        if (width < 1 || height < 1 || width > PngSizeMost || height > PngSizeMost)
            reader.fail();
        else
            size = QSize(int(width), int(height));
    }
    return reader.ok() ? size : QSize();
}

// A picture is a number, 0 for none, and the file's bytes.
void skipPicture(Reader &reader)
{
    const quint32 exists = reader.number();
    if (exists == 1)
        skipPng(reader);
    else if (exists != 0)
        reader.fail();
}

void skipPictures(Reader &reader, quint32 count)
{
    if (count > IconLimit)
        reader.fail();
    for (quint32 i = 0; reader.ok() && i < count; ++i) {
        skipPicture(reader);
        reader.text(4096);  // a path on another computer
        reader.take(4 * 4); // its size, mode and state
    }
}

// The three forms that streams had: the engine's name and its pictures, the pictures alone, one picture.
void skipIcon(Reader &reader)
{
    const quint32 first = reader.number();
    if (first == NullText || first == 0)
        return;
    if (first == quint32(2 * IconEngine.size())) {
        if (reader.characters(first, quint32(IconEngine.size())) != IconEngine)
            reader.fail();
        skipPictures(reader, reader.number());
    } else if (first == 1 && reader.startsWith(PngSignature)) {
        skipPng(reader);
    } else {
        skipPictures(reader, first);
    }
}

void writeIcon(QDataStream &stream, const QByteArray &png)
{
    Reader reader(png);
    const QSize size = skipPng(reader);
    if (size.isEmpty()) {
        stream << NullText;
        return;
    }
    stream << IconEngine << qint32(1) << qint32(1);
    stream.writeRawData(png.constData(), png.size());
    stream << QString() << qint32(size.width()) << qint32(size.height()) << quint32(0) << OffState;
}

// ---- Rows ---------------------------------------------------------------------------------------

bool isText(const QString &text)
{
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    return std::none_of(text.begin(), text.end(), isControl);
}

// A mouse button of a program without a language has its built-in name.
QString keyNameHere(const QString &name)
{
    for (std::size_t i = 0; i < MouseButtonCount; ++i)
        if (name == QString::fromUtf8(MouseButtonTable[i].text) && KeyNameToCodeText(name).isEmpty())
            return MouseButtonNames()[i];
    return name;
}

MacroRow takeRow(Reader &reader)
{
    MacroRow row{keyNameHere(reader.text(TextLimit)), 0};
    skipIcon(reader);
    // What is written as one line is to be read as one.
    if (!isText(row.text) || (row.isDelay() && row.text.contains(QLatin1Char(' '))))
        reader.fail();
    if (!row.isDelay())
        row.type = reader.text(1) == PressField ? 0 : ReleaseItemType;
    return row;
}

QByteArray padded(const QByteArray &text, int size)
{
    QByteArray field = text.left(size - 1);
    return field.append(size - field.size(), '\0');
}

// At a character's end.
QByteArray nameField(QString name)
{
    while (name.toUtf8().size() >= NameSize)
        name.chop(name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    return padded(name.toUtf8(), NameSize);
}

} // namespace

QByteArray exportedMacro(const ExportedMacro &macro, const RowIcons &icons)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(17);
    stream << padded(Marker, MarkerSize) << nameField(macro.name)
           << padded(QByteArray::number(macro.cycle), CycleSize) << qint32(macro.rows.size());
    for (const MacroRow &row : macro.rows) {
        stream << row.text;
        writeIcon(stream, row.isDelay() ? icons.delay : row.isRelease() ? icons.release : icons.press);
        if (!row.isDelay())
            stream << QByteArray(row.isRelease() ? "1" : "0", 2);
    }
    return bytes;
}

std::optional<ExportedMacro> parseExportedMacro(const QByteArray &bytes)
{
    Reader reader(bytes);
    if (reader.field(MarkerSize) != Marker)
        return std::nullopt;
    ExportedMacro macro;
    macro.name = cutToMacroBytes(QString::fromUtf8(reader.field(NameSize)));
    const QByteArray cycle = reader.field(CycleSize);
    bool isNumber = false;
    macro.cycle = cycle.toInt(&isNumber);
    const quint32 count = reader.number();
    if (!isMacroName(macro.name) || !isNumber || macro.cycle < 0 || macro.cycle > 0xFF ||
        count > quint32(MacroRowLimit))
        return std::nullopt;
    for (quint32 i = 0; reader.ok() && i < count; ++i)
        macro.rows << takeRow(reader);
    return reader.ok() ? std::make_optional(macro) : std::nullopt;
}

bool saveExportedMacro(const QString &path, const ExportedMacro &macro, const RowIcons &icons)
{
    return writeFileSafely(path, exportedMacro(macro, icons));
}

std::optional<ExportedMacro> loadExportedMacro(const QString &path)
{
    const std::optional<QByteArray> bytes = readFile(path, ExportedMacroLimit);
    return bytes ? parseExportedMacro(*bytes) : std::nullopt;
}

} // namespace macro
