// benchmarks/Transcode.cpp: whole texts between UTF-16 and UTF-8 or UTF-7.
//
// Each side writes into memory prepared before, but GLib, whose functions return new memory. ICU,
// Qt, GLib and libunistring check what they decode; the library doesn't, and no input has anything
// to be found. In UTF-7 ICU and iconv also leave a run without "-" where the next character can't
// be mistaken, and differ in which of the optional characters stand for themselves: what is
// compared there is the text that comes back. Rates are those of the text in UTF-8, and of its
// UTF-16 bytes beside UTF-7.
#include <System/String/StringConvert.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#if HAVE_ICU
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#endif
#if HAVE_QT
#include <QStringDecoder>
#include <QStringEncoder>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif
#if HAVE_UNISTRING
#include <unistr.h>
#endif

#include "Support/Iconv.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
struct Input
{
    explicit Input(const std::string& input) : name(input), units(Inputs::Units(input))
    {
        SetBytes();
    }
    Input(const std::string& input, std::u16string text) : name(input), units(std::move(text))
    {
        SetBytes();
    }

    std::string name;
    std::u16string units;
    std::string bytes; // UTF-8
    std::string utf7;

private:
    void SetBytes();
};

const unsigned short* Wide(const std::u16string& text)
{
    return reinterpret_cast<const unsigned short*>(text.data());
}

unsigned short* Wide(std::u16string& text)
{
    return reinterpret_cast<unsigned short*>(text.data());
}

unsigned Size(const std::string& text)
{
    return static_cast<unsigned>(text.size());
}

unsigned Size(const std::u16string& text)
{
    return static_cast<unsigned>(text.size());
}

// Room for what any side makes of a text.
std::string ByteRoom(const Input& input)
{
    return std::string(input.units.size() * 6 + 16, '\0');
}

std::u16string UnitRoom(const Input& input)
{
    return std::u16string(input.utf7.size() + input.bytes.size() + 16, u'\0');
}

void Input::SetBytes()
{
    units += u"\n\n"; // the end of UTF-7 isn't lost on a character of its own
    std::string room = ByteRoom(*this);
    int length = CT_StringConvert::si_WideToUTF8(room.data(), Wide(units), Size(units));
    bytes.assign(room, 0, static_cast<size_t>(length));
    length = CT_StringConvert::si_WideToUTF7(room.data(), Wide(units), Size(units));
    utf7.assign(room, 0, static_cast<size_t>(length));
}

// ---- The sides of a measure -------------------------------------------------------------------

// Call takes an input and prepared memory, and gives the length of what it wrote there.
template <class Room>
class TextMeasure
{
public:
    // Read makes the text that is compared of what was written.
    using Read = std::u16string (*)(const Room& written);

    TextMeasure(const char* name, const Input& onInput, size_t size, Room memory, Read reader)
        : input(onInput),
          room(std::move(memory)),
          read(reader),
          measure(name, onInput.name, {Amount::BYTES, size})
    {}

    template <class Call>
    void Side(const char* side, Call call)
    {
        auto memory = std::make_shared<Room>(room);
        const Input& text = input;
        measure.Side(
            side, [&text, memory, call] { return call(text, *memory); },
            [&, memory] {
                return read(memory->substr(0, static_cast<size_t>(call(text, *memory))));
            });
    }

private:
    const Input& input;
    Room room;
    Read read;
    Measure<std::u16string> measure;
};

std::u16string FromUTF8(const std::string& written)
{
    return Inputs::ToUnits(written);
}

std::u16string FromUTF7(const std::string& written)
{
    std::u16string text(written.size() + 1, u'\0');
    text.resize(static_cast<size_t>(
        CT_StringConvert::si_UTF7ToWide(Wide(text), written.data(), Size(written))));
    return text;
}

std::u16string AsItIs(const std::u16string& written)
{
    return written;
}

// ---- UTF-8 ------------------------------------------------------------------------------------

void RegisterDecode(const Input& input)
{
    TextMeasure<std::u16string> measure("decode", input, input.bytes.size(), UnitRoom(input),
                                        AsItIs);
    measure.Side("ostra", [](const Input& in, std::u16string& out) {
        return CT_StringConvert::si_UTF8ToWide(Wide(out), in.bytes.data(), Size(in.bytes));
    });
#if HAVE_ICU
    measure.Side("icu", [](const Input& in, std::u16string& out) {
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8(out.data(), static_cast<int32_t>(out.size()), &length, in.bytes.data(),
                      static_cast<int32_t>(in.bytes.size()), &status);
        return length;
    });
#endif
#if HAVE_QT
    measure.Side("qt", [](const Input& in, std::u16string& out) {
        QStringDecoder decoder(QStringDecoder::Utf8);
        auto* start = reinterpret_cast<QChar*>(out.data());
        return decoder.appendToBuffer(start, QByteArrayView(in.bytes)) - start;
    });
#endif
    const Iconv iconv("UTF-16LE", "UTF-8");
    measure.Side("iconv", [iconv](const Input& in, std::u16string& out) {
        return iconv.Convert(in.bytes, out);
    });
#if HAVE_GLIB
    measure.Side("glib", [](const Input& in, std::u16string& out) {
        glong length = 0;
        gunichar2* text = g_utf8_to_utf16(in.bytes.data(), static_cast<glong>(in.bytes.size()),
                                          nullptr, &length, nullptr);
        out.assign(reinterpret_cast<char16_t*>(text), static_cast<size_t>(length));
        g_free(text);
        return length;
    });
#endif
#if HAVE_UNISTRING
    measure.Side("unistring", [](const Input& in, std::u16string& out) {
        size_t length = out.size();
        u8_to_u16(reinterpret_cast<const uint8_t*>(in.bytes.data()), in.bytes.size(),
                  reinterpret_cast<uint16_t*>(out.data()), &length);
        return length;
    });
#endif
}

void RegisterEncode(const Input& input)
{
    TextMeasure<std::string> measure("encode", input, input.bytes.size(), ByteRoom(input),
                                     FromUTF8);
    measure.Side("ostra", [](const Input& in, std::string& out) {
        return CT_StringConvert::si_WideToUTF8(out.data(), Wide(in.units), Size(in.units));
    });
#if HAVE_ICU
    measure.Side("icu", [](const Input& in, std::string& out) {
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &length, in.units.data(),
                    static_cast<int32_t>(in.units.size()), &status);
        return length;
    });
#endif
#if HAVE_QT
    measure.Side("qt", [](const Input& in, std::string& out) {
        QStringEncoder encoder(QStringEncoder::Utf8);
        return encoder.appendToBuffer(out.data(), QStringView(in.units)) - out.data();
    });
#endif
    const Iconv iconv("UTF-8", "UTF-16LE");
    measure.Side("iconv", [iconv](const Input& in, std::string& out) {
        return iconv.Convert(in.units, out);
    });
#if HAVE_GLIB
    measure.Side("glib", [](const Input& in, std::string& out) {
        glong length = 0;
        char* text = g_utf16_to_utf8(Wide(in.units), static_cast<glong>(in.units.size()), nullptr,
                                     &length, nullptr);
        out.assign(text, static_cast<size_t>(length));
        g_free(text);
        return length;
    });
#endif
#if HAVE_UNISTRING
    measure.Side("unistring", [](const Input& in, std::string& out) {
        size_t length = out.size();
        u16_to_u8(reinterpret_cast<const uint16_t*>(in.units.data()), in.units.size(),
                  reinterpret_cast<uint8_t*>(out.data()), &length);
        return length;
    });
#endif
}

// ---- UTF-7 ------------------------------------------------------------------------------------

#if HAVE_ICU
std::shared_ptr<UConverter> OpenUTF7()
{
    UErrorCode status = U_ZERO_ERROR;
    return {ucnv_open("UTF-7", &status), ucnv_close};
}
#endif

void RegisterEncode7(const Input& input)
{
    TextMeasure<std::string> measure("encode7", input, input.units.size() * 2, ByteRoom(input),
                                     FromUTF7);
    measure.Side("ostra", [](const Input& in, std::string& out) {
        return CT_StringConvert::si_WideToUTF7(out.data(), Wide(in.units), Size(in.units));
    });
#if HAVE_ICU
    measure.Side("icu", [converter = OpenUTF7()](const Input& in, std::string& out) {
        UErrorCode status = U_ZERO_ERROR;
        return ucnv_fromUChars(converter.get(), out.data(), static_cast<int32_t>(out.size()),
                               in.units.data(), static_cast<int32_t>(in.units.size()), &status);
    });
#endif
    const Iconv iconv("UTF-7", "UTF-16LE");
    measure.Side("iconv", [iconv](const Input& in, std::string& out) {
        return iconv.Convert(in.units, out);
    });
}

void RegisterDecode7(const Input& input)
{
    TextMeasure<std::u16string> measure("decode7", input, input.units.size() * 2, UnitRoom(input),
                                        AsItIs);
    measure.Side("ostra", [](const Input& in, std::u16string& out) {
        return CT_StringConvert::si_UTF7ToWide(Wide(out), in.utf7.data(), Size(in.utf7));
    });
#if HAVE_ICU
    measure.Side("icu", [converter = OpenUTF7()](const Input& in, std::u16string& out) {
        UErrorCode status = U_ZERO_ERROR;
        return ucnv_toUChars(converter.get(), out.data(), static_cast<int32_t>(out.size()),
                             in.utf7.data(), static_cast<int32_t>(in.utf7.size()), &status);
    });
#endif
    const Iconv iconv("UTF-16LE", "UTF-7");
    measure.Side("iconv", [iconv](const Input& in, std::u16string& out) {
        return iconv.Convert(in.utf7, out);
    });
}

// A tenth of each part of a text.
std::u16string Tenth(const std::u16string& text)
{
    std::u16string tenth;
    for (size_t at = 0; at < text.size(); at += 10000)
        tenth += text.substr(at, 1000);
    return tenth;
}
} // namespace

int main(int argc, char** argv)
{
    std::vector<Input> inputs;
    for (const char* name : {"words.en", "faq.de", "faq.ru", "faq.ja", "mixed"})
        inputs.emplace_back(name);
    const std::u16string& mixed = inputs.back().units;
    inputs.emplace_back("mixed.tenth", Tenth(mixed));
    for (const Input& input : inputs) {
        RegisterDecode(input);
        RegisterEncode(input);
        RegisterEncode7(input);
        RegisterDecode7(input);
    }
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}
