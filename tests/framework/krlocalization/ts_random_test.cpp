#include "linguist_tools.hpp"

#include <kr/localization/ts.hpp>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace TS = KR::Localization::TS;

namespace {

/// Files with everything that the format knows, in forms that Linguist's own tools don't write but
/// read. The same seed gives the same file.
class RandomFile
{
public:
    explicit RandomFile(unsigned seed) : m_random(seed) {}

    std::string make()
    {
        m_out = chance(2) ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" : "";
        m_out += chance(2) ? "<!DOCTYPE TS>" : chance(2) ? "<!DOCTYPE TS []>\r\n" : "";
        m_relative = chance(2);
        m_out += "<TS version='2.0'" + language() + ">";
        if (chance(4)) {
            m_out += "<defaultcodec>UTF-8</defaultcodec>";
        }
        if (chance(3)) {
            m_out += "\n<dependencies><dependency catalog=\"qt_fr\"/>\n<dependency "
                     "catalog='b'></dependency></dependencies>";
        }
        extras();
        for (int i = below(5); i > 0; --i) {
            context();
        }
        extras();
        return m_out + space() + "</TS>\n";
    }

private:
    int below(int n) { return static_cast<int>(m_random() % static_cast<unsigned>(n)); }
    bool chance(int n) { return below(n) == 0; }

    std::string pick(const std::vector<std::string>& of)
    {
        return of[static_cast<std::size_t>(below(static_cast<int>(of.size())))];
    }

    std::string space()
    {
        return pick({"", "", "\n    ", " ", "\r\n\t", "<!-- a comment -->", "\n<!-- <a> -->\n"});
    }

    std::string blank() { return pick({"", "", "\n    ", " ", "&#32;\r\n\t"}); }

    std::string language()
    {
        return pick({"", " language=\"fr\"", " language=\"ar_EG\"", " language='ja'",
                     " language=\"pl\"", " language=\"xx_YY\"", " language=\"C\"",
                     R"( language="pt-BR" sourcelanguage="en")",
                     R"( sourcelanguage="de_DE" language="cy" other="&amp;")"});
    }

    std::string text(bool bytes = true)
    {
        static const std::vector<std::string> pieces{"a",
                                                     "Walk",
                                                     " ",
                                                     "  ",
                                                     "\n",
                                                     "\t",
                                                     "\r\n",
                                                     "\r",
                                                     "&amp;",
                                                     "&lt;b&gt;",
                                                     "&quot;",
                                                     "&apos;",
                                                     "'",
                                                     "\"",
                                                     "&#xe9;",
                                                     "\u00e9",
                                                     "\u00a0",
                                                     "&#160;",
                                                     "\u2028",
                                                     "\u3000",
                                                     "&#13;",
                                                     "&#x1F600;",
                                                     "\U0001F601",
                                                     "%1",
                                                     "%n file(s)",
                                                     ">",
                                                     "\u007f",
                                                     "\u0085",
                                                     "<![CDATA[<&]]>",
                                                     "<![CDATA[]]>",
                                                     "\u0093",
                                                     "Library:/Folder",
                                                     "\ufeff",
                                                     "&#10;"};
        static const std::vector<std::string> byteElements{
            "<byte value=\"x1\"/>",  "<byte value=\"xd\"/>",        "<byte value=\"31\"/>",
            "<byte value=\"x0\"/>",  "<byte value=\"zz\"/>",        "<byte/>",
            "<byte value=\"xa0\"/>", "<byte value=\"x41\"></byte>", "<byte value=\"x1f600\"/>"};
        std::string result;
        for (int i = below(5); i > 0; --i) {
            result += bytes && chance(5) ? pick(byteElements) : pick(pieces);
        }
        return result;
    }

    /// No carriage return, with which lconvert writes a file that it can't read.
    std::string name()
    {
        std::string result = text(false);
        while (result.find("&#13;") != std::string::npos) {
            result = text(false);
        }
        return result;
    }

    void element(const std::string& name, const std::string& content)
    {
        m_out += space() + "<" + name + ">" + content + "</" + name.substr(0, name.find(' ')) + ">";
    }

    void extras()
    {
        while (chance(3)) {
            element("extra-" + pick({"a", "po-flags", "a-b", "a.b", "\u00e9", "A", "a_b", ""}),
                    text());
        }
    }

    void context()
    {
        m_out += "<context encoding=\"UTF-8\">" + space();
        element("name", pick({"Library:/Walk", "Library:/A &amp; B/&quot;C&quot;", name(), "",
                              "Library:/a<!-- x -->b"}));
        for (int i = below(6); i > 0; --i) {
            message();
        }
        m_out += space() + "</context>";
    }

    void message()
    {
        m_plural = chance(3);
        m_out += space() + "<message";
        if (chance(4)) {
            m_out += " id=\"" + pick({"a", "b", "id.c", "it's > &#233;"}) + "\"";
        }
        m_out += m_plural ? " numerus=\"yes\"" : pick({"", "", " numerus='no'", " utf8=\"true\""});
        m_out += ">";
        for (int i = chance(2) ? below(4) : 0; i > 0; --i) {
            location();
        }
        element("source", pick({"Hello", "World", text(), ""}));
        for (const char* name :
             {"oldsource", "comment", "oldcomment", "extracomment", "translatorcomment"}) {
            if (chance(4)) {
                element(name, text());
            }
        }
        if (!chance(6)) {
            translation();
        }
        extras();
        if (chance(5)) {
            element("userdata", pick({"a", " b\n", "it's \"x\" >"}));
        }
        m_out += space() + "</message>";
    }

    void location()
    {
        m_out += space() + "<location";
        const std::string file = pick(
            {"a.cpp", "../src/b.cpp", "./c.cpp", "d//e.cpp", "f/../g.ui", "win\\h.cpp", "a.cpp"});
        if (!m_relative || chance(2)) {
            m_out += " filename=\"" + file + "\"";
        }
        if (!chance(5)) {
            m_out += " line='" +
                     pick(m_relative && chance(2)
                              ? std::vector<std::string>{"+3", "-2", "+0", "+100"}
                              : std::vector<std::string>{"7", "12", "0", "x", " 5"}) +
                     "'";
        }
        m_out += chance(2) ? "/>" : "></location>";
    }

    void form(const std::string& name)
    {
        if (!chance(4)) {
            element(name, text());
            return;
        }
        m_out += "<" + name + " variants=\"yes\">";
        for (int i = below(4); i > 0; --i) {
            m_out += blank() + "<lengthvariant>" + text() + "</lengthvariant>" + blank();
        }
        m_out += "</" + name.substr(0, name.find(' ')) + ">";
    }

    void translation()
    {
        const std::string type = pick({"", "", " type=\"unfinished\"", " type=\"vanished\"",
                                       " type='obsolete'", " type=\"other\""});
        if (!m_plural) {
            form("translation" + type);
            return;
        }
        m_out += "<translation" + type + ">" + blank();
        for (int i = below(4); i > 0; --i) {
            m_out += blank();
            pluralForm();
        }
        m_out += blank() + "</translation>";
    }

    void pluralForm()
    {
        const std::string before = std::move(m_out);
        m_out.clear();
        form("numerusform");
        // Comments are not allowed between the forms.
        const auto start = m_out.find("<numerusform");
        m_out = before + m_out.substr(start);
    }

    std::mt19937 m_random;
    std::string m_out;
    bool m_relative = false;
    bool m_plural = false;
};

} // namespace

// What was read of a file that was written is read of it again, whatever contexts are called then.
TEST(TsRandom, IsReadBackWhereThatIsSaid)
{
    int known = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        const QByteArray file = QByteArray::fromStdString(RandomFile(seed).make());
        const auto before = TS::translatorFrom(TS::translatorTo(TS::translatorFrom(file), false));
        ASSERT_EQ(TS::translatorFrom(TS::translatorTo(before, false)), before) << seed;
        auto renamed = before;
        for (auto& message : renamed.messages()) {
            if (seed % 2 != 0 || message.context().startsWith(QLatin1String("Library:/W"))) {
                message.setContext(QStringLiteral("New/") + message.context());
            }
        }
        const QByteArray bytes = TS::translatorTo(renamed, false);
        if (TS::isReadBack(bytes, renamed, before)) {
            ++known;
            ASSERT_EQ(TS::translatorFrom(bytes), renamed) << seed;
        }
    }
    EXPECT_GT(known, 500);
}

TEST(TsRandom, WritesWhatLconvertWritesOfEveryFile)
{
    for (unsigned seed = 1; seed <= 400; ++seed) {
        const QByteArray file = QByteArray::fromStdString(RandomFile(seed).make());
        const QByteArray written = TS::translatorTo(TS::translatorFrom(file), false);
        ASSERT_EQ(written.toStdString(), linguist::lconvert(file).toStdString())
            << "seed " << seed << " of\n"
            << file.toStdString();
        ASSERT_EQ(linguist::lconvert(written).toStdString(), written.toStdString()) << seed;
    }
}
