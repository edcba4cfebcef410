#include "kit/text_reference.hpp"

#include "support/testing.hpp"

namespace hueline::test {

namespace {

std::string const folder = "/usr/share/unicode/";

std::array<std::string, 14> const class_names = {
    "Other",   "CR",          "LF", "Control", "Extend", "ZWJ", "Regional_Indicator",
    "Prepend", "SpacingMark", "L",  "V",       "T",      "LV",  "LVT"};
std::string const pictographic = "Extended_Pictographic";

std::string trimmed(std::string const& text)
{
    std::size_t const first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

// Calls visit(first, last, fields after them) for each line of a file that begins with a code point or a range.
bool read_file(std::string const& name,
               std::function<void(char32_t, char32_t, std::vector<std::string> const&)> const& visit)
{
    std::ifstream file(folder + name);
    for (std::string line; std::getline(file, line);) {
        line.resize(std::min(line.find('#'), line.size()));
        std::vector<std::string> fields;
        for (std::size_t at = 0; at <= line.size();) {
            std::size_t const end = std::min(line.find(';', at), line.size());
            fields.push_back(trimmed(line.substr(at, end - at)));
            at = end + 1;
        }
        if (fields[0].empty()) {
            continue;
        }
        std::size_t const dots = fields[0].find("..");
        auto const first = static_cast<char32_t>(std::stoul(fields[0], nullptr, 16));
        auto const last = dots == std::string::npos
                              ? first
                              : static_cast<char32_t>(std::stoul(fields[0].substr(dots + 2), nullptr, 16));
        fields.erase(fields.begin());
        visit(first, last, fields);
    }
    return file.eof();
}

} // namespace

UnicodeData::UnicodeData() : class_of(0x110000), width_of(0x110000, 1), emoji_form(0x110000)
{
    auto const set = [](std::vector<std::uint8_t>& values, char32_t first, char32_t last, std::size_t value) {
        std::fill(values.begin() + static_cast<std::ptrdiff_t>(first),
                  values.begin() + static_cast<std::ptrdiff_t>(last) + 1, static_cast<std::uint8_t>(value));
    };
    read_file("auxiliary/GraphemeBreakProperty.txt", [&](char32_t first, char32_t last, auto const& fields) {
        auto const found = std::find(class_names.begin(), class_names.end(), fields[0]);
        set(class_of, first, last, static_cast<std::size_t>(found - class_names.begin()));
    });
    read_file("emoji/emoji-data.txt", [&](char32_t first, char32_t last, auto const& fields) {
        if (fields[0] == pictographic) {
            set(class_of, first, last, class_names.size());
        }
    });
    // "All code points, assigned or unassigned, that are in these blocks and planes default to W."
    set(width_of, 0x3400, 0x4dbf, 2);
    set(width_of, 0x4e00, 0x9fff, 2);
    set(width_of, 0xf900, 0xfaff, 2);
    set(width_of, 0x20000, 0x2fffd, 2);
    set(width_of, 0x30000, 0x3fffd, 2);
    read_file("EastAsianWidth.txt", [&](char32_t first, char32_t last, auto const& fields) {
        set(width_of, first, last, fields[0] == "W" || fields[0] == "F" ? 2 : 1);
    });
    // Nothing has no width: marks, formats, controls, and code points that are reserved for what is ignored.
    read_file("DerivedCoreProperties.txt", [&](char32_t first, char32_t last, auto const& fields) {
        if (fields[0] == "Default_Ignorable_Code_Point" && (first >= 0xe0000 || first == 0xfff0 || first == 0x2065)) {
            set(width_of, first, last, 0);
        }
    });
    read_file("UnicodeData.txt", [&](char32_t first, char32_t last, auto const& fields) {
        std::string const& category = fields[1];
        if (category == "Mn" || category == "Me" || category == "Cf" || category == "Zl" || category == "Zp" ||
            category == "Cc") {
            set(width_of, first, last, first == 0xad ? 1 : 0);
        }
    });
    read_file("HangulSyllableType.txt", [&](char32_t first, char32_t last, auto const& fields) {
        if (fields[0] == "V" || fields[0] == "T") {
            set(width_of, first, last, 0);
        }
    });
    read_file("emoji/emoji-variation-sequences.txt", [&](char32_t first, char32_t, auto const& fields) {
        if (fields[0] == "emoji style") {
            emoji_form[first] = true;
        }
    });
    std::ifstream file(folder + "auxiliary/GraphemeBreakProperty.txt");
    std::getline(file, version); // "# GraphemeBreakProperty-15.0.0.txt"
    version = version.substr(0, version.rfind(".txt"));
    version.erase(0, version.rfind('-') + 1);
}

UnicodeData const* UnicodeData::get()
{
    if (!std::ifstream(folder + "auxiliary/GraphemeBreakTest.txt") || !std::ifstream(folder + "emoji/emoji-test.txt")) {
        return nullptr;
    }
    static UnicodeData const data;
    return &data;
}

std::string const& UnicodeData::breaks(char32_t code) const
{
    return class_of[code] == class_names.size() ? pictographic : class_names[class_of[code]];
}

unsigned UnicodeData::width(char32_t code) const { return width_of[code]; }

bool UnicodeData::has_emoji_form(char32_t code) const { return emoji_form[code]; }

std::vector<Shown> characters(std::string_view text)
{
    std::vector<Shown> result;
    for (std::size_t at = 0; at < text.size();) {
        unsigned const lead = static_cast<unsigned char>(text[at]);
        std::size_t const size = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
        char32_t code = size == 1 ? lead : lead & (0x7fU >> size);
        for (std::size_t i = 1; i < size; ++i) {
            code = (code << 6) | (static_cast<unsigned char>(text.at(at + i)) & 0x3fU);
        }
        result.push_back({code, std::string(text.substr(at, size))});
        at += size;
    }
    return result;
}

namespace {

using Text = std::vector<Shown>;

class Matcher {
public:
    Matcher(UnicodeData const& unicode, Text const& whole, std::size_t begin) : data(unicode), text(whole), at(begin) {}

    // The place after the cluster.
    std::size_t match()
    {
        if (is("CR") && is("LF", 1)) {
            return at + 2;
        }
        if (is_control()) {
            return at + 1;
        }
        while (is("Prepend") && at + 1 < text.size() && !is_control(1)) { // as long as there is a core after it
            ++at;
        }
        if (is("Prepend")) {
            ++at;
        } else {
            core();
        }
        while (is("Extend") || is("ZWJ") || is("SpacingMark")) {
            ++at;
        }
        return at;
    }

private:
    bool is(std::string_view name, std::size_t ahead = 0) const
    {
        return at + ahead < text.size() && data.breaks(text[at + ahead].code) == name;
    }
    bool is_control(std::size_t ahead = 0) const { return is("CR", ahead) || is("LF", ahead) || is("Control", ahead); }

    void skip(std::string_view name)
    {
        while (is(name)) {
            ++at;
        }
    }

    void core()
    {
        if (is("Regional_Indicator") && is("Regional_Indicator", 1)) {
            at += 2;
        } else if (is("L") || is("V") || is("T") || is("LV") || is("LVT")) {
            hangul();
        } else if (is("Extended_Pictographic")) {
            emoji();
        } else {
            ++at;
        }
    }

    // L* (V+ | LV V* | LVT) T* | L+ | T+
    void hangul()
    {
        bool const begins_with_l = is("L");
        skip("L");
        if (is("LVT")) {
            ++at;
        } else if (is("LV") || is("V")) {
            ++at;
            skip("V");
        } else if (begins_with_l) {
            return;
        }
        skip("T");
    }

    void emoji()
    {
        ++at;
        for (;;) {
            std::size_t next = 0;
            while (is("Extend", next)) {
                ++next;
            }
            if (!is("ZWJ", next) || !is("Extended_Pictographic", next + 1)) {
                return;
            }
            at += next + 2;
        }
    }

    UnicodeData const& data;
    Text const& text;
    std::size_t at;
};

} // namespace

std::vector<std::size_t> clusters(UnicodeData const& data, Text const& text)
{
    std::vector<std::size_t> sizes;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const end = Matcher(data, text, at).match();
        sizes.push_back(end - at);
        at = end;
    }
    return sizes;
}

unsigned columns(UnicodeData const& data, Text const& cluster)
{
    unsigned sum = 0;
    for (std::size_t i = 0; i < cluster.size(); ++i) {
        sum += data.width(cluster[i].code);
        if (cluster[i].code == 0xfe0f && i > 0 && data.has_emoji_form(cluster[i - 1].code)) {
            sum += 1;
        }
    }
    return std::min(sum, 2U);
}

std::size_t columns_of_text(UnicodeData const& data, Text const& text)
{
    std::size_t sum = 0;
    auto begin = text.begin();
    for (std::size_t const size : clusters(data, text)) {
        auto const end = begin + static_cast<std::ptrdiff_t>(size);
        sum += columns(data, Text(begin, end));
        begin = end;
    }
    return sum;
}

} // namespace hueline::test
