#include "XML/XMLParser.h"

#include "tests/Source/XML/Documents.h"

namespace {

using namespace Kestrin;

TEST(XMLParser, TellsNamesAndAttributesAndKeepsInstructionsWhenAskedTo) {
    std::istringstream stream("<!DOCTYPE r [<!ENTITY e 'ent'>]><?first a?>"
                              "<p:r xmlns:p='urn:p' p:a='1' a='&e;&lt;'><?second b c?><plain/>"
                              "<?third?></p:r>");
    Parser parser(stream, Parser::kDontValidate);
    ASSERT_TRUE(parser.DownToChild());
    EXPECT_TRUE(parser.CurrentElement() == Name("r", "urn:p"));
    EXPECT_FALSE(parser.CurrentElement() == Name("r"));
    AttributeList attributes(7);
    EXPECT_TRUE(parser.ReadAllAttributes(attributes));
    ASSERT_EQ(attributes.size(), 3u);
    UString value;
    EXPECT_TRUE(Parser::FindAttributeInList(attributes, U("a"), value));
    EXPECT_FALSE(Parser::FindAttributeInList(attributes, U("A"), value));
    EXPECT_EQ(value, U("ent<"));

    parser.SetCollectInstructions(true);
    EXPECT_TRUE(parser.DownToChild());
    EXPECT_FALSE(parser.ReadAllAttributes(attributes));
    EXPECT_TRUE(attributes.empty());
    parser.UpToParent();
    EXPECT_FALSE(parser.DownToChild());
    const std::deque<Parser::Instruction> expected = {{U("second"), U("b c")}, {U("third"), {}}};
    EXPECT_EQ(parser.Instructions(), expected);
}

TEST(XMLParser, FindsNoAttributesInFrontOfATextOfAnyLength) {
    for (const char* text : {"a", "1234567", "a text that is not short at all"}) {
        std::istringstream stream("<r x='1'>" + std::string(text) + "<b/></r>");
        Parser parser(stream, Parser::kDontValidate);
        ASSERT_TRUE(parser.DownToChild());
        AttributeList attributes;
        EXPECT_TRUE(parser.ReadAllAttributes(attributes));
        EXPECT_FALSE(parser.DownToChild());
        EXPECT_FALSE(parser.ReadAllAttributes(attributes));
        EXPECT_TRUE(attributes.empty());
        EXPECT_EQ(parser.ReadText(), U(text));
    }
}

class SkipsB : public ElementFilter {
    bool Skips(Parser& parser) override { return parser.CurrentElement() == Name("b"); }
};

TEST(XMLParser, WalksFromNodeToNodeAndPastWhatItsFilterSkips) {
    std::istringstream stream("<r><b><c/></b><d/><b/><!--c--><?i?><?j?>t</r>");
    Parser parser(stream, Parser::kDontValidate);
    parser.SetElementFilter(std::make_unique<SkipsB>());
    EXPECT_TRUE(parser.DownToChild());
    EXPECT_TRUE(parser.DownToChild());
    EXPECT_TRUE(parser.CurrentElement() == Name("d"));
    EXPECT_FALSE(parser.DoDownToChild());
    parser.UpToParent();
    EXPECT_TRUE(parser.DoDownToChild());
    EXPECT_TRUE(parser.CurrentElement() == Name("b"));
    parser.UpToParent();
    std::vector<int> types;
    for (int type = 0; parser.Advance(type, types.size() == 1);)
        types.push_back(type);
    EXPECT_EQ(types, (std::vector{8, 7, 3, 15})) << "comment, first instruction, text, end";
}

} // namespace
