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

} // namespace
