#include "XML/XMLWriter.h"

#include "tests/XML/Documents.h"
#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>
#include <libxml/xmlwriter.h>

#include <functional>

namespace {

using namespace Kestrin;

/// A writer into memory.
class WriterTest : public testing::Test {
protected:
    ~WriterTest() override {
        xmlFreeTextWriter(fOutput);
        xmlBufferFree(fBuffer);
    }

    std::string Written() {
        xmlTextWriterFlush(fOutput);
        return reinterpret_cast<const char*>(xmlBufferContent(fBuffer));
    }

    /// The failure line that an operation prints when it throws -50.
    static std::string Failure(const std::function<void()>& operation) {
        CapturedOutput output;
        try {
            operation();
        } catch (int fault) {
            EXPECT_EQ(fault, -50);
        }
        return output.Text();
    }

    static std::string At(int line) {
        return "FailString Kestrin at file:Source/XML/XMLWriter line:" + std::to_string(line) +
               "\n";
    }

    xmlBuffer* fBuffer = xmlBufferCreate();
    xmlTextWriter* fOutput = xmlNewTextWriterMemory(fBuffer, 0);
    Writer fWriter{fOutput};
    const Name fElement{"e"};
};

TEST_F(WriterTest, LaysAnItemTreeOut) {
    const auto container = CreateContainer(U("s"));
    container->AddItem(CreateUString(U("a"), U("x")));
    container->AddItem(CreateRawData(U("r"), RawData("\x01\x02\xab")));
    container->Write(fWriter);
    EXPECT_EQ(Written(), "\n"
                         "<XSET name=\"s\">\n"
                         "\t<TEXT name=\"a\">x</TEXT>\n"
                         "\t<DATA name=\"r\" size=\"3\">\n"
                         "\t\t0102ab\n"
                         "\t</DATA>\n"
                         "</XSET>");
}

TEST_F(WriterTest, AddsNoLayoutInline) {
    fWriter.StartElement(fElement);
    {
        const Writer::InlineMode outer(fWriter);
        const Writer::InlineMode inner(fWriter);
        fWriter.StartElement(Name("b", "urn:x"));
        fWriter.Write(U("bold"));
        fWriter.EndElement(fElement);
    }
    fWriter.StartElement(fElement);
    fWriter.EndElement(fElement);
    fWriter.EndElement(fElement);
    EXPECT_EQ(Written(), "\n<e><b>bold</b>\n\t<e/>\n</e>");
}

TEST_F(WriterTest, EscapesAndKeepsWhatReadersWouldLose) {
    fWriter.StartElement(fElement);
    fWriter.Attribute(Name("a"), U("<\"&\n\t\u00e9"));
    fWriter.Write(U(" "));
    fWriter.Write(U("  "));
    fWriter.Write(U("<&>\r"));
    fWriter.Write(UString(static_cast<unsigned short>(1)));
    fWriter.Comment(U("c-"));
    EXPECT_EQ(Written(), "\n<e a=\"&lt;&quot;&amp;&#10;&#9;&#xE9;\">XML_SPACE_ENCODE  "
                         "&lt;&amp;&gt;&#13;\x01<!--c- -->");
}

TEST_F(WriterTest, ReportsEachFailureAtItsPlace) {
    EXPECT_EQ(Failure([this] { fWriter.StartElement(Name("")); }), At(125));
    EXPECT_EQ(Failure([this] { fWriter.EndElement(fElement); }), At(143));
    EXPECT_EQ(Failure([this] { fWriter.Attribute(Name("a"), U("v")); }), At(178));
    // Without an output nothing can be written.
    Writer nowhere(nullptr);
    EXPECT_EQ(Failure([&nowhere] { nowhere.Write(U("x")); }), At(196));
    EXPECT_EQ(Failure([&nowhere] { nowhere.Comment(U("x")); }), At(204));
    EXPECT_EQ(Failure([&nowhere] { nowhere.NewLine(); }), At(260));
}

TEST(WriterIsValidString, TellsWhatXMLForbids) {
    for (const char* text : {"", "a\t\n\r", "\u00e9\ud7ff\ue000\ufffd", "\U00010000"})
        EXPECT_TRUE(Writer::IsValidString(U(text))) << text;
    for (unsigned short unit : {0x0, 0x8, 0xB, 0xC, 0xE, 0x1F, 0xD800, 0xDFFF, 0xFFFE, 0xFFFF})
        EXPECT_FALSE(Writer::IsValidString(UString(unit))) << unit;
}

} // namespace
