// The text of a tape: what is written is read back byte for byte, and what is wrong is named with its line.
#include <random>

#include "service/tape/Tape.h"

namespace service::tape {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Piece literal(std::string text)
{
    return {Kind::literal, 0, std::move(text)};
}

Template textOf(std::string_view text)
{
    Template out;
    append(out, literal(std::string(text)));
    return out;
}

Exchange exchangeWith(const Template& text)
{
    Exchange exchange;
    exchange.target = {literal("/kznconnect/op.do")};
    exchange.headers.push_back({"Content-Type", text});
    exchange.body = text;
    exchange.contentType = "text/xml; charset=utf-8";
    exchange.reply = text;
    exchange.replyHeaders.push_back({"Location", text});
    return exchange;
}

void expectSame(const Exchange& read, const Exchange& written)
{
    EXPECT_EQ(read.method, written.method);
    EXPECT_EQ(read.target, written.target);
    EXPECT_EQ(read.headers, written.headers);
    EXPECT_EQ(read.body, written.body);
    EXPECT_EQ(read.status, written.status);
    EXPECT_EQ(read.contentType, written.contentType);
    EXPECT_EQ(read.replyHeaders, written.replyHeaders);
    EXPECT_EQ(read.reply, written.reply);
}

void expectRoundTrip(const Exchange& exchange)
{
    const std::string text = tape::textOf(exchange, 1);
    SCOPED_TRACE(text);
    const Tape tape = readTape(titleText() + text);
    ASSERT_EQ(tape.size(), 1U);
    expectSame(tape.front(), exchange);
    EXPECT_EQ(tape::textOf(tape.front(), 1), text);
}

void expectRoundTrip(std::string_view text)
{
    expectRoundTrip(exchangeWith(textOf(text)));
}

TEST(TapeFormat, EveryByteComesBack)
{
    std::string all;
    for (int value = 0; value < 256; ++value) {
        const std::string byte(1, static_cast<char>(value));
        all += byte;
        for (const std::string& text : {byte, byte + byte, "a" + byte, byte + "a", "<a>" + byte + "</a>", "&a=" + byte})
            expectRoundTrip(text);
    }
    expectRoundTrip(all);
    expectRoundTrip("<a>" + all + "</a>");
    expectRoundTrip(std::string(400, ' '));
    expectRoundTrip("<a>" + std::string(400, ' ') + "</a>");
}

TEST(TapeFormat, AnyTextComesBack)
{
    std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same texts each time
    const std::vector<std::string> pieces{" ",        "\n",          "\r",   "[",   "]",     "#",     "{",
                                          "}",        "\\",          "\\s",  "<a>", "%",     "</a>",  "<a/>",
                                          "%3C",      "%3E",         "&",    "=",   "é",     "𝄞",     "\xC3",
                                          "\xF0\x9F", "{x",          "cred", "\t",  "<?x?>", "<!-->", "\xEF\xBB\xBF",
                                          "\xC2\xA0", "[reply] 200", "\n# x"};
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (std::size_t i = random() % 120; i > 0; --i) text += pieces[random() % pieces.size()];
        expectRoundTrip(text);
    }
}

TEST(TapeFormat, PlaceholdersComeBack)
{
    const Template all{literal("<a>"),        {Kind::server, 0, {}},
                       literal("</a>"),       {Kind::cred, 3, {}},
                       {Kind::secret, 1, {}}, {Kind::secret, 2, {}},
                       {Kind::any, 0, {}},    {Kind::id, 7, "wksp-1} = \\ {"},
                       {Kind::id, 7, {}},     {Kind::time, 0, "2026-02-01T09:30:00Z"},
                       {Kind::time, 0, {}}};
    expectRoundTrip(exchangeWith(all));
    Exchange form = exchangeWith(all);
    form.body.push_back({Kind::boundary, 0, {}});
    form.headers.push_back({"Content-Type", {{Kind::boundary, 0, {}}}});
    expectRoundTrip(form);
    EXPECT_THAT(tape::textOf(exchangeWith(all), 1), HasSubstr("{cred 3}{secret}{secret 2}{any}{id 7 = wksp-1\\x7D"));
}

TEST(TapeFormat, ReadsLikeTheWire)
{
    Exchange exchange = exchangeWith({});
    exchange.headers = {{"Content-Type", textOf("application/x-www-form-urlencoded")}};
    exchange.body = textOf("cmd=login&username=anna");
    exchange.reply = textOf("<kznapi><response><result>SUCCESS</result></response></kznapi>");
    exchange.replyHeaders.clear();
    EXPECT_EQ(tape::textOf(exchange, 3),
              "\n# exchange 3\n[request] POST\n/kznconnect/op.do\n[headers]\n"
              "Content-Type: application/x-www-form-urlencoded\n[body]\ncmd=login\n&username=anna\n"
              "[reply] 200 text/xml; charset=utf-8\n<kznapi>\n  <response>\n    <result>SUCCESS</result>\n"
              "  </response>\n</kznapi>\n");
}

// What an editor or another system does to a text's lines.
TEST(TapeFormat, EditorsChangeNothing)
{
    const Exchange exchange = exchangeWith(textOf("<a>  two blanks  </a>  <b> </b> \r\n"));
    const std::string text = tape::textOf(exchange, 1);
    std::string indented;
    for (const char c : text) {
        indented += c == '\n' ? "\r\n" : std::string(1, c);
    }
    expectSame(readTape(indented).front(), exchange);
    EXPECT_THAT(text, testing::Not(HasSubstr(" \n")));
}

TEST(TapeFormat, MayBeWrittenByHand)
{
    const Tape tape = readTape(
        "A title, and whatever else\n\n[body]\n  cmd=x\n  # a comment\n  &a={any}\n[reply]\n<a/>\n\n"
        "[request] GET\n/picture?a=b\n[reply] 404 text/plain\nno\\sway\n");
    ASSERT_EQ(tape.size(), 2U);
    EXPECT_EQ(tape[0].method, "POST");
    EXPECT_EQ(tape[0].target, textOf("/kznconnect/op.do"));
    EXPECT_EQ(tape[0].body, (Template{literal("cmd=x&a="), {Kind::any, 0, {}}}));
    EXPECT_EQ(tape[0].contentType, "text/xml");
    EXPECT_EQ(tape[0].line, 3U);
    EXPECT_EQ(tape[1].method, "GET");
    EXPECT_EQ(tape[1].status, 404U);
    EXPECT_EQ(tape[1].reply, textOf("no way"));
}

TEST(TapeFormat, SaysWhatIsWrongAndWhere)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "no exchange"},
        {"only a title\n", "no exchange"},
        {"[request] POST\n/x\n", "line 1: this request has no reply"},
        {"[request] PUT\n/x\n[reply]\n", "line 1: a request is"},
        {"[request] POST\n[reply]\n", "line 1: a request has a target"},
        {"\n[what]\n", "line 2: no such section: \"what\""},
        {"[reply\n", "line 1: a section's name"},
        {"[body]\na\n[body]\nb\n[reply]\n", "line 3: \"body\" stands twice"},
        {"[reply] 99\n", "line 1: no such status"},
        {"[reply] x\n", "line 1: no such status"},
        {"[reply] 200 te\x01xt\n", "line 1: this is no content type"},
        {"[headers]\nnothing\n[reply]\n", "line 2: a header is"},
        {"[body]\n\\q\n[reply]\n", "line 2: unknown escape"},
        {"[body]\n\\x1\n[reply]\n", "line 2: unknown escape"},
        {"[body]\n\\xG0\n[reply]\n", "line 2: unknown escape"},
        {"[body]\n\\\n[reply]\n", "line 2: unknown escape"},
        {"[body]\n{any\n[reply]\n", "line 2: a brace is not closed"},
        {"[body]\n{some}\n[reply]\n", "line 2: no such placeholder"},
        {"[body]\n{}\n[reply]\n", "line 2: no such placeholder"},
        {"[body]\n{cred}\n[reply]\n", "line 2: a number belongs"},
        {"[body]\n{cred 0}\n[reply]\n", "line 2: no such number"},
        {"[body]\n{cred 99999999999999999999}\n[reply]\n", "line 2: no such number"},
        {"[body]\n{any 1}\n[reply]\n", "line 2: no such number"},
        {"[body]\n{cred 1 = a}\n[reply]\n", "line 2: no value belongs"},
        {"[reply]\na\nb{boundary}\n", "line 3: {boundary} stands in a request"},
        {"[reply]\na\n[reply headers]\nX: a\nY: {boundary}\n", "line 5: {boundary} stands in a request"},
        {"[reply]\n[reply headers]\nX: a\nY: " + std::string(70'000, 'y') + "\n", "line 4: this header is too long"},
        {"[reply]\n[reply headers]\n" + std::string(70'000, 'y') + ": a\n", "line 3: this header's name is too long"},
        {"[reply] 200 " + std::string(70'000, 'y') + "\n", "line 1: this is no content type"},
        {"[body]\n{id 1}\n[reply]\n", "nowhere does {id 1} have a value"},
        {"[body]\n{id 1 = a}{id 1 = b}\n[reply]\n", "{id 1} has two values"},
    };
    for (const auto& [text, wanted] : cases) {
        SCOPED_TRACE(text);
        try {
            readTape(text);
            ADD_FAILURE() << "was read";
        } catch (const TapeError& error) {
            EXPECT_THAT(error.what(), HasSubstr(wanted));
        }
    }
}

TEST(TapeFormat, ValuesAreFoundInAnySpelling)
{
    for (const Place place : {Place::plain, Place::form, Place::xml}) {
        for (const std::string value : {"a&b <c> é%+=\"'", "cred-1", "%41", "&amp;"}) {
            EXPECT_EQ(unspelled(spelled(value, place), place), value);
            EXPECT_THAT(spellings(value), testing::Contains(spelled(value, place)));
        }
    }
    EXPECT_EQ(unspelled("&#65;&#x42;&quot;&apos;&no;&", Place::xml), "AB\"'&no;&");
    EXPECT_THAT(spellings("a b"), ElementsAre("a%20b", "a b", "a+b"));
}

}  // namespace

}  // namespace service::tape
