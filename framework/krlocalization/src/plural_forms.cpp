#include "plural_forms.hpp"

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace KR::Localization {

namespace {

struct Language
{
    std::string_view code;
    int forms;
};

// The languages with more than one form, by code: those of the table in Linguist of Qt 5.15, as
// lconvert shows them, with the former codes that Qt still takes (iw, ji, mo, no, sh, tl).
constexpr std::array a_languages{
    Language{"aa", 2},  Language{"ab", 2}, Language{"af", 2}, Language{"am", 2},
    Language{"ar", 6},  Language{"as", 2}, Language{"ay", 2}, Language{"az", 2},
    Language{"ba", 2},  Language{"be", 3}, Language{"bg", 2}, Language{"bn", 2},
    Language{"br", 2},  Language{"bs", 3}, Language{"ca", 2}, Language{"co", 2},
    Language{"cs", 3},  Language{"cy", 5}, Language{"da", 2}, Language{"de", 2},
    Language{"dv", 3},  Language{"el", 2}, Language{"en", 2}, Language{"eo", 2},
    Language{"es", 2},  Language{"et", 2}, Language{"eu", 2}, Language{"fi", 2},
    Language{"fil", 2}, Language{"fo", 2}, Language{"fr", 2}, Language{"fur", 2},
    Language{"fy", 2},  Language{"ga", 3}, Language{"gd", 4}, Language{"gl", 2},
    Language{"gu", 2},  Language{"gv", 3}, Language{"ha", 2}, Language{"he", 2},
    Language{"hi", 2},  Language{"hr", 3}, Language{"hy", 2}, Language{"ia", 2},
    Language{"ie", 2},  Language{"ik", 3}, Language{"is", 2}, Language{"it", 2},
    Language{"iu", 3},  Language{"iw", 2}, Language{"ji", 2}, Language{"ka", 2},
    Language{"kk", 2},  Language{"kl", 2}, Language{"km", 2}, Language{"kn", 2},
    Language{"ks", 2},  Language{"ku", 2}, Language{"kw", 2}, Language{"ky", 2},
    Language{"la", 2},  Language{"lb", 2}, Language{"ln", 2}, Language{"lo", 2},
    Language{"lt", 3},  Language{"lv", 3}, Language{"mg", 2}, Language{"mi", 3},
    Language{"mk", 3},  Language{"ml", 2}, Language{"mn", 2}, Language{"mo", 3},
    Language{"mr", 2},  Language{"mt", 4}, Language{"nb", 2}, Language{"ne", 2},
    Language{"nl", 2},  Language{"nn", 2}, Language{"no", 2}, Language{"nso", 2},
    Language{"oc", 2},  Language{"or", 2}, Language{"pa", 2}, Language{"pl", 3},
    Language{"ps", 2},  Language{"pt", 2}, Language{"qu", 2}, Language{"rm", 2},
    Language{"rn", 2},  Language{"ro", 3}, Language{"ru", 3}, Language{"rw", 2},
    Language{"sa", 3},  Language{"sd", 2}, Language{"se", 3}, Language{"sh", 3},
    Language{"si", 2},  Language{"sk", 3}, Language{"sl", 4}, Language{"sm", 3},
    Language{"sn", 2},  Language{"so", 2}, Language{"sq", 2}, Language{"sr", 3},
    Language{"ss", 2},  Language{"st", 2}, Language{"sv", 2}, Language{"sw", 2},
    Language{"ta", 2},  Language{"te", 2}, Language{"tg", 2}, Language{"ti", 2},
    Language{"tk", 2},  Language{"tl", 2}, Language{"tn", 2}, Language{"to", 2},
    Language{"ts", 2},  Language{"ug", 2}, Language{"uk", 3}, Language{"ur", 2},
    Language{"uz", 2},  Language{"vo", 2}, Language{"wa", 2}, Language{"wo", 2},
    Language{"xh", 2},  Language{"yi", 2}, Language{"zu", 2},
};

/// The language in lower case; empty when the code has none.
std::string languageOf(const QString& languageCode)
{
    std::string language;
    for (const QChar c : languageCode) {
        if (c == QLatin1Char('_') || c == QLatin1Char('-') || c == QLatin1Char('.') ||
            c == QLatin1Char('@')) {
            break;
        }
        if (c.unicode() > 'z' || language.size() > 3) {
            return {};
        }
        language += c.toLower().toLatin1();
    }
    return language;
}

} // namespace

int pluralForms(const QString& languageCode)
{
    const std::string language = languageOf(languageCode);
    const auto* const found = std::lower_bound(
        a_languages.begin(), a_languages.end(), language,
        [](const Language& entry, const std::string& code) { return entry.code < code; });
    return found != a_languages.end() && found->code == language ? found->forms : 1;
}

} // namespace KR::Localization
