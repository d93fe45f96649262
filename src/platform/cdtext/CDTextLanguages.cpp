#include "CDTextLanguages.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

namespace {

struct Language
{
    quint8 ebu;
    const char *iso639;
    const char *name;
};

// The codes of EBU Tech 3264, appendix 3. Left out are those without a code of their own in
// ISO 639-1: Flemish (2a), Sranan Tongo (50), Serbo-Croat (54), Ruthenian (55), Papiamento (5b),
// Moldavian (60) and Dari (73). Lappish (16) stands for Northern Sami, Ndebele (5e) for the
// northern one. scripts/make-language-table reads the second column.
constexpr auto languages = std::to_array<Language>({
    {0x01, "sq", "Albanian"},      {0x02, "br", "Breton"},
    {0x03, "ca", "Catalan"},       {0x04, "hr", "Croatian"},
    {0x05, "cy", "Welsh"},         {0x06, "cs", "Czech"},
    {0x07, "da", "Danish"},        {0x08, "de", "German"},
    {0x09, "en", "English"},       {0x0a, "es", "Spanish"},
    {0x0b, "eo", "Esperanto"},     {0x0c, "et", "Estonian"},
    {0x0d, "eu", "Basque"},        {0x0e, "fo", "Faroese"},
    {0x0f, "fr", "French"},        {0x10, "fy", "Western Frisian"},
    {0x11, "ga", "Irish"},         {0x12, "gd", "Gaelic"},
    {0x13, "gl", "Galician"},      {0x14, "is", "Icelandic"},
    {0x15, "it", "Italian"},       {0x16, "se", "Northern Sami"},
    {0x17, "la", "Latin"},         {0x18, "lv", "Latvian"},
    {0x19, "lb", "Luxembourgish"}, {0x1a, "lt", "Lithuanian"},
    {0x1b, "hu", "Hungarian"},     {0x1c, "mt", "Maltese"},
    {0x1d, "nl", "Dutch"},         {0x1e, "no", "Norwegian"},
    {0x1f, "oc", "Occitan"},       {0x20, "pl", "Polish"},
    {0x21, "pt", "Portuguese"},    {0x22, "ro", "Romanian"},
    {0x23, "rm", "Romansh"},       {0x24, "sr", "Serbian"},
    {0x25, "sk", "Slovak"},        {0x26, "sl", "Slovenian"},
    {0x27, "fi", "Finnish"},       {0x28, "sv", "Swedish"},
    {0x29, "tr", "Turkish"},       {0x2b, "wa", "Walloon"},
    {0x45, "zu", "Zulu"},          {0x46, "vi", "Vietnamese"},
    {0x47, "uz", "Uzbek"},         {0x48, "ur", "Urdu"},
    {0x49, "uk", "Ukrainian"},     {0x4a, "th", "Thai"},
    {0x4b, "te", "Telugu"},        {0x4c, "tt", "Tatar"},
    {0x4d, "ta", "Tamil"},         {0x4e, "tg", "Tajik"},
    {0x4f, "sw", "Swahili"},       {0x51, "so", "Somali"},
    {0x52, "si", "Sinhala"},       {0x53, "sn", "Shona"},
    {0x56, "ru", "Russian"},       {0x57, "qu", "Quechua"},
    {0x58, "ps", "Pushto"},        {0x59, "pa", "Panjabi"},
    {0x5a, "fa", "Persian"},       {0x5c, "or", "Oriya"},
    {0x5d, "ne", "Nepali"},        {0x5e, "nd", "Ndebele"},
    {0x5f, "mr", "Marathi"},       {0x61, "ms", "Malay"},
    {0x62, "mg", "Malagasy"},      {0x63, "mk", "Macedonian"},
    {0x64, "lo", "Lao"},           {0x65, "ko", "Korean"},
    {0x66, "km", "Central Khmer"}, {0x67, "kk", "Kazakh"},
    {0x68, "kn", "Kannada"},       {0x69, "ja", "Japanese"},
    {0x6a, "id", "Indonesian"},    {0x6b, "hi", "Hindi"},
    {0x6c, "he", "Hebrew"},        {0x6d, "ha", "Hausa"},
    {0x6e, "gn", "Guarani"},       {0x6f, "gu", "Gujarati"},
    {0x70, "el", "Greek"},         {0x71, "ka", "Georgian"},
    {0x72, "ff", "Fulah"},         {0x74, "cv", "Chuvash"},
    {0x75, "zh", "Chinese"},       {0x76, "my", "Burmese"},
    {0x77, "bg", "Bulgarian"},     {0x78, "bn", "Bengali"},
    {0x79, "be", "Belarusian"},    {0x7a, "bm", "Bambara"},
    {0x7b, "az", "Azerbaijani"},   {0x7c, "as", "Assamese"},
    {0x7d, "hy", "Armenian"},      {0x7e, "ar", "Arabic"},
    {0x7f, "am", "Amharic"},
});

const Language *find(const QString &iso639)
{
    const auto *const found =
        std::find_if(languages.begin(), languages.end(), [&iso639](const Language &language) {
            return iso639 == QLatin1StringView(language.iso639);
        });
    return found == languages.end() ? nullptr : found;
}

}

quint8 CDTextLanguages::ebuCode(const QString &iso639)
{
    const Language *const language = find(iso639);
    return language ? language->ebu : quint8(0);
}

QString CDTextLanguages::nameOf(const QString &iso639)
{
    if (iso639.isEmpty())
        return QStringLiteral("Default");
    const Language *const language = find(iso639);
    return language ? QString::fromLatin1(language->name) : iso639;
}

QStringList CDTextLanguages::codes()
{
    QStringList codes;
    codes.reserve(qsizetype(languages.size()));
    for (const Language &language : languages)
        codes.append(QString::fromLatin1(language.iso639));
    return codes;
}
