#include "XML/XMLWriter.h"

#include "tests/Source/XML/Documents.h"

#include <libxml/xmlwriter.h>

namespace {

using namespace Kestrin;

class WriterTest : public testing::Test {
protected:
    ~WriterTest() override {
        xmlFreeTextWriter(fOutput);
        xmlBufferFree(fBuffer);
    }

    xmlBuffer* fBuffer = xmlBufferCreate();
    xmlTextWriter* fOutput = xmlNewTextWriterMemory(fBuffer, 0);
    Writer fWriter{fOutput};
    const Name fElement{"e"};
};

TEST_F(WriterTest, EscapesWhatReadersWouldLoseAndAddsNoLayoutInline) {
    fWriter.StartElement(fElement);
    fWriter.Attribute(Name("a"), U("<\"&\n\t\u00e9"));
    {
        const Writer::InlineMode outer(fWriter);
        const Writer::InlineMode inner(fWriter);
        fWriter.StartElement(Name("b", "urn:x"));
        for (const char* text : {" ", "  ", "<&>\r", "\x01"})
            fWriter.Write(U(text));
        fWriter.EndElement(fElement);
    }
    fWriter.StartElement(fElement);
    fWriter.EndElement(fElement);
    fWriter.Comment(U("c-"));
    xmlTextWriterFlush(fOutput);
    EXPECT_STREQ(reinterpret_cast<const char*>(xmlBufferContent(fBuffer)),
                 "\n<e a=\"&lt;&quot;&amp;&#10;&#9;&#xE9;\">"
                 "<b>XML_SPACE_ENCODE  &lt;&amp;&gt;&#13;\x01</b>\n\t<e/><!--c- -->");
}

TEST_F(WriterTest, ReportsWhatCannotBeWritten) {
    const std::string place = "FailString Kestrin at file:Source/XML/XMLWriter line:";
    EXPECT_EQ(FailureOf([this] { fWriter.StartElement(Name("")); }), place + "125\n");
    EXPECT_EQ(FailureOf([this] { fWriter.EndElement(fElement); }), place + "143\n");
    EXPECT_EQ(FailureOf([this] { fWriter.Attribute(Name("a"), U("v")); }), place + "178\n");
}

TEST_F(WriterTest, TellsWhatXMLForbids) {
    EXPECT_TRUE(Writer::IsValidString(U("a\t\n\r\u00e9\ud7ff\ue000\ufffd\U00010000")));
    for (unsigned short unit : {0x0, 0x8, 0xB, 0xC, 0xE, 0x1F, 0xD800, 0xDFFF, 0xFFFE, 0xFFFF})
        EXPECT_FALSE(Writer::IsValidString(UString(unit))) << unit;
}

} // namespace
