#include "linguist_tools.hpp"
#include "plural_forms.hpp"

#include <gtest/gtest.h>

using KR::Localization::pluralForms;

namespace {

int formsOfLconvert(const std::string& language)
{
    std::string file = "<TS language=\"" + language +
                       "\"><context><name>c</name><message numerus=\"yes\"><source>s</source>"
                       "<translation>";
    for (int i = 0; i < 8; ++i) {
        file += "<numerusform>f</numerusform>";
    }
    file += "</translation></message></context></TS>";
    return linguist::lconvert(QByteArray::fromStdString(file)).count("<numerusform>");
}

} // namespace

// All codes that are known here, and a sample of the others.
TEST(PluralForms, AreThoseOfLconvertForTwoLetterCodes)
{
    int number = 0;
    for (char first = 'a'; first <= 'z'; ++first) {
        for (char second = 'a'; second <= 'z'; ++second) {
            const std::string code{first, second};
            const int forms = pluralForms(QString::fromStdString(code));
            if (forms != 1 || ++number % 8 == 0) {
                ASSERT_EQ(forms, formsOfLconvert(code)) << code;
            }
        }
    }
}

class PluralFormsOf : public testing::TestWithParam<const char*>
{
};

TEST_P(PluralFormsOf, AreThoseOfLconvert)
{
    EXPECT_EQ(pluralForms(QString::fromUtf8(GetParam())), formsOfLconvert(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Codes, PluralFormsOf,
                         testing::Values("", "C", "f", "fil", "fur", "nso", "fra", "haw", "tlh",
                                         "fr_FR", "fr-FR", "FR", "Ar_eg", "pt_BR", "pt_PT",
                                         "sr_Latn_RS", "zh_Hant_TW", "ru.UTF-8", "pl@euro",
                                         "frrr_FR", "_fr", "fr ", "f\u00e9", "ru_", "en_US_POSIX",
                                         "polish", "abcdefghijk", "ja_JP"));
