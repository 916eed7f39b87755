#include "XML/XMLParser.h"

#include "tests/XML/Documents.h"

#include <gtest/gtest.h>

namespace {

using namespace Kestrin;

/// A parser over a text, and the walk in few words.
struct Walk {
    explicit Walk(const std::string& document)
        : stream(document)
        , parser(stream, Parser::kDontValidate) {}

    /// The next child's local name, or "-".
    std::string Down() { return parser.DownToChild() ? parser.CurrentElement().Local() : "-"; }
    std::string Text() { return parser.ReadText().utf8_str(); }

    std::istringstream stream;
    Parser parser;
};

TEST(XMLParser, WalksDownAndUp) {
    Walk walk("<!DOCTYPE a><a><!-- c -->\n<b><deep><x/></deep></b> <c/><d>t</d></a>");
    EXPECT_EQ(walk.Down(), "a");
    EXPECT_EQ(walk.Down(), "b");
    EXPECT_EQ(walk.Down(), "deep");
    walk.parser.UpToParent();
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "c");
    EXPECT_EQ(walk.Down(), "-");
    EXPECT_EQ(walk.Text(), "");
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "d");
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "-");
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "-");
}

TEST(XMLParser, LeavesOutElementsBehindText) {
    Walk walk("<r><a>text<b/>more</a><c>text<b/></c><d/></r>");
    walk.Down();
    EXPECT_EQ(walk.Down(), "a");
    EXPECT_EQ(walk.Down(), "-");
    EXPECT_EQ(walk.Down(), "-");
    EXPECT_EQ(walk.Text(), "text");
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "c");
    EXPECT_EQ(walk.Text(), "text");
    EXPECT_EQ(walk.Down(), "b");
    walk.parser.UpToParent();
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "d");
}

TEST(XMLParser, EndsATextWhereSomethingElseBegins) {
    Walk walk("<r><a>one<!-- c -->two</a><a><?pi x?>  <!-- c --><![CDATA[<]]>&amp;joined</a>"
              "<a>one<?pi x?>two</a><a> \n </a><a>XML_SPACE_ENCODE</a><a>XML_SPACE_ENCODE!</a>"
              "<a>&#x41;</a></r>");
    walk.Down();
    for (const char* text : {"one", "<&joined", "one", "", " ", "XML_SPACE_ENCODE!", "A"}) {
        EXPECT_EQ(walk.Down(), "a");
        EXPECT_EQ(walk.Text(), text);
        walk.parser.UpToParent();
    }
    EXPECT_EQ(walk.Down(), "-");
}

TEST(XMLParser, ReadsATextOfAnyLengthBehindAComment) {
    const std::string text = std::string(5000, ' ') + std::string(100'000, 'x');
    Walk walk("<r><!-- c -->" + text + "</r>");
    walk.Down();
    EXPECT_EQ(walk.Text(), text);
}

TEST(XMLParser, TellsAnElementsNameAndAttributes) {
    Walk walk("<!DOCTYPE r [<!ENTITY e 'ent'>]>"
              "<p:r xmlns:p='urn:p' p:a='1' a='&e;&lt;'><plain/></p:r>");
    ASSERT_TRUE(walk.parser.DownToChild());
    EXPECT_TRUE(walk.parser.CurrentElement() == Name("r", "urn:p"));
    EXPECT_FALSE(walk.parser.CurrentElement() == Name("r"));
    AttributeList attributes(7);
    EXPECT_TRUE(walk.parser.ReadAllAttributes(attributes));
    ASSERT_EQ(attributes.size(), 3u);
    UString value = U("untouched");
    EXPECT_FALSE(Parser::FindAttributeInList(attributes, U("A"), value));
    EXPECT_EQ(value, U("untouched"));
    EXPECT_TRUE(Parser::FindAttributeInList(attributes, U("p:a"), value));
    EXPECT_EQ(value, U("1"));
    EXPECT_TRUE(Parser::FindAttributeInList(attributes, U("a"), value));
    EXPECT_EQ(value, U("ent<"));
    EXPECT_TRUE(Parser::FindAttributeInList(attributes, U("xmlns:p"), value));
    // The cursor is back on the element.
    EXPECT_EQ(walk.Down(), "plain");
    EXPECT_FALSE(walk.parser.ReadAllAttributes(attributes));
    EXPECT_TRUE(attributes.empty());
}

TEST(XMLParser, KeepsInstructionsWhenAskedTo) {
    Walk walk("<?first a?><r><?second b c?><x/><?third?></r>");
    walk.Down();
    walk.parser.SetCollectInstructions(true);
    EXPECT_EQ(walk.Down(), "x");
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "-");
    const auto& kept = walk.parser.Instructions();
    ASSERT_EQ(kept.size(), 2u);
    EXPECT_EQ(kept[0], Parser::Instruction(U("second"), U("b c")));
    EXPECT_EQ(kept[1], Parser::Instruction(U("third"), UString()));
}

TEST(XMLParser, LeavesOutWhatItsFilterSkips) {
    struct SkipMarked : ElementFilter {
        bool Skips(Parser& parser) override {
            AttributeList attributes;
            return parser.ReadAllAttributes(attributes);
        }
    };
    Walk walk("<r><a skip=''><b/></a><c skip=''/><d><e/></d><f skip=''/></r>");
    walk.parser.SetElementFilter(std::make_unique<SkipMarked>());
    walk.Down();
    EXPECT_EQ(walk.Down(), "d");
    walk.parser.UpToParent();
    EXPECT_EQ(walk.Down(), "-");
}

TEST(XMLParser, FreesItsOwnedObjectAtTheEnd) {
    const auto object = std::make_shared<int>(1);
    {
        Walk walk("<r/>");
        walk.parser.SetOwnedObject(object);
        EXPECT_EQ(object.use_count(), 2);
    }
    EXPECT_EQ(object.use_count(), 1);
}

} // namespace
