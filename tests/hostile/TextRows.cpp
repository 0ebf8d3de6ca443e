// Character sets and documents. All of it is read by the library itself, alike on every system.
#include "pvutil/Limits.h"
#include "tests/hostile/Rows.h"

namespace kzn::test {

namespace limits = pvutil::limits;

namespace {

const std::string kHead = "<kznapi><response><result>SUCCESS</result></response>";
const std::string kFailure = "<kznapi><response><result>FAILURE</result><reason>r</reason></response></kznapi>";

Row document(std::string name, const std::string& text, Outcome outcome)
{
    return sends(std::move(name), replyOf(text), outcome);
}

Row declared(std::string name, const std::string& contentType, const std::string& bytes, Outcome outcome)
{
    return sends(std::move(name), replyOf(bytes, contentType), outcome);
}

std::string inUtf16(const std::string& ascii, bool isLittle)
{
    std::string units;
    for (const char c : ascii) units += isLittle ? std::string{c, '\0'} : std::string{'\0', c};
    return units;
}

std::vector<Row> charsets()
{
    const std::string mark = "\xEF\xBB\xBF";
    return {
        declared("no type", "", kSuccess, plain()),
        declared("another type", "image/png", kSuccess, plain()),
        declared("a type of no sense", ";;;=,\"", kSuccess, plain()),
        declared("a character set that nobody knows", "text/xml; charset=x-none", kSuccess, plain()),
        declared("an empty character set", "text/xml; charset=", kSuccess, plain()),
        declared("a quote that does not end", "text/xml; charset=\"utf-8", kSuccess, plain()),
        declared("a character set of a kilobyte", "text/xml; charset=" + std::string(1000, 'c'), kSuccess, plain()),
        declared("seven bits", "text/xml; charset=utf-7", "+ADw-kznapi+AD4-", senseless()),
        declared("UTF-16 that is UTF-8", "text/xml; charset=utf-16", kSuccess, senseless()),
        declared("UTF-16 of an odd length", "text/xml; charset=utf-16", inUtf16(kSuccess, true) + "<", plain()),
        declared("UTF-16 with its mark", "text/xml; charset=utf-16", "\xFF\xFE" + inUtf16(kSuccess, true), plain()),
        declared("UTF-16 the other way round", "text/xml; charset=utf-16", "\xFE\xFF" + inUtf16(kSuccess, false),
                 plain()),
        declared("UTF-16 that is not declared", "text/xml", "\xFF\xFE" + inUtf16(kSuccess, true), senseless()),
        declared("UTF-32", "text/xml; charset=utf-32", std::string("\xFF\xFE\0\0", 4) + kSuccess, senseless()),
        document("a mark", mark + kSuccess, plain()),
        document("two marks", mark + mark + kSuccess, plain()),
        document("a mark alone", mark, senseless()),
        document("bytes that are no UTF-8", "\xFF\xFE\xFD" + kSuccess, senseless()),
        document("bytes that are no UTF-8 behind it", kSuccess + "\xFF", plain()),
        document("a surrogate in UTF-8", kHead + "\xED\xA0\x80</kznapi>", plain()),
        document("a letter in two bytes too many", "\xC0\xBC" + kSuccess.substr(1), senseless()),
    };
}

std::vector<Row> documents()
{
    return {
        document("nothing", "", senseless()),
        document("a blank", " ", senseless()),
        document("a page", "<html><body>It works!<br></body></html>", senseless()),
        document("JSON", "{\"result\":\"SUCCESS\"}", senseless()),
        document("the word alone", "SUCCESS", senseless()),
        document("another root", "<api><response><result>SUCCESS</result></response></api>", senseless()),
        document("another place", "<kznapi><result>SUCCESS</result></kznapi>", senseless()),
        document("no result", "<kznapi><response/></kznapi>", senseless()),
        document("an empty result", "<kznapi><response><result/></response></kznapi>", senseless()),
        document("a refusal", kFailure, refused()),
        document("a refusal that is cut off", kFailure.substr(0, kFailure.size() - 12), refused()),
        document("cut off inside the result", kSuccess.substr(0, 30), senseless()),
        document("cut off behind the result", kHead, plain()),
        document("a wrong end", kHead + "</other>", plain()),
        document("two roots", kSuccess + "<kznapi/>", plain()),
        document("letters behind", kSuccess + "abc", plain()),
        document("zeros behind", kSuccess + std::string(100, '\0'), plain()),
        document("a zero before", std::string(1, '\0') + kSuccess, senseless()),
        document("a zero inside",
                 "<kznapi><response><result>SUC" + std::string(1, '\0') + "CESS</result></response></kznapi>",
                 senseless()),
        document("a reference to nothing", kHead + "&none;</kznapi>", plain()),
        document("a reference to zero", kHead + "&#0;</kznapi>", plain()),
        document("a reference beyond all characters", kHead + "&#x110000;</kznapi>", plain()),
        document("a reference of forty digits", kHead + "&#" + std::string(40, '9') + ";</kznapi>", plain()),
        document("an attribute twice", "<kznapi a='1' a='2'>" + kSuccess.substr(8), senseless()),
        document(
            "ten thousand attributes",
            kHead + "<a" +
                [] {
                    std::string all;
                    for (int i = 0; i < 10'000; ++i) all += " a" + std::to_string(i) + "=''";
                    return all;
                }() +
                "/></kznapi>",
            plain()),
        document("a name of a megabyte", kHead + "<" + std::string(1'000'000, 'n') + "/></kznapi>", plain()),
        document("a comment of a megabyte", kHead + "<!--" + std::string(1'000'000, 'c') + "--></kznapi>", plain()),
        document("a comment that does not end", kHead + "<!-- ", plain()),
        document("a section that does not end", kHead + "<![CDATA[", plain()),
        document("an instruction", "<?php system('x'); ?>" + kSuccess, plain()),
        document("another version", "<?xml version='9.9'?>" + kSuccess, plain()),
        document("another encoding in the text", "<?xml version='1.0' encoding='utf-32'?>" + kSuccess, plain()),
        document("a namespace", "<k:kznapi xmlns:k='x'>" + kSuccess + "</k:kznapi>", senseless()),
    };
}

std::vector<Row> types()
{
    const std::string laughs =
        "<!DOCTYPE k [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'><!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;'>]>";
    return {
        document("a document type", "<!DOCTYPE kznapi>" + kSuccess, senseless()),
        document("entities inside entities", laughs + "<kznapi>&c;</kznapi>", senseless()),
        document("an entity of a file", "<!DOCTYPE k [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><kznapi>&e;</kznapi>",
                 senseless()),
        document("an entity of an address", "<!DOCTYPE k SYSTEM 'http://127.0.0.1:1/x.dtd'><kznapi/>", senseless()),
        document("a parameter entity", "<!DOCTYPE k [<!ENTITY % p SYSTEM 'x'>%p;]><kznapi/>", senseless()),
        document("a document type that does not end", "<!DOCTYPE kznapi [", senseless()),
        document("a document type behind the result", kHead + "<!DOCTYPE kznapi></kznapi>", plain()),
    };
}

std::vector<Row> floods()
{
    const auto nest = [](std::size_t depth) { return repeated("<a>", depth) + repeated("</a>", depth); };
    return {
        document("as deep as may be", kHead + nest(limits::kXmlDepth - 1) + "</kznapi>", plain()),
        document("one deeper", kHead + nest(limits::kXmlDepth) + "</kznapi>", beyond()),
        document("deep, and never closed", kHead + repeated("<a>", 100'000), beyond()),
        document("deep in its own names", repeated("<kznapi><response><result>", 100'000), beyond()),
        document("a reason beyond the limit",
                 "<kznapi><response><result>SUCCESS</result><reason>" + std::string(limits::kXmlTextUnits + 1, 'r') +
                     "</reason></response></kznapi>",
                 beyond()),
        document(
            "messages beyond the limit",
            kHead + "<messageStrings>" + repeated("<message/>", limits::kXmlItems + 1) + "</messageStrings></kznapi>",
            beyond()),
        document("a hundred thousand empty elements", kHead + repeated("<x/>", 100'000) + "</kznapi>", plain()),
        document(
            "numbers that are too large",
            kHead +
                "<return><sessionInfo><sessionDuration>99999999999999999999</sessionDuration></sessionInfo></return>"
                "</kznapi>",
            plain()),
    };
}

}  // namespace

std::vector<Row> textRows()
{
    std::vector<Row> all;
    for (auto some : {&charsets, &documents, &types, &floods})
        for (Row& row : some()) all.push_back(std::move(row));
    return all;
}

}  // namespace kzn::test
