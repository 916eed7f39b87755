#include "XML/XMLParser.h"

#include "tests/Source/XML/Documents.h"
#include "tests/support/TemporaryFolder.h"

#include <libxml/parser.h>

#include <fstream>

namespace {

using namespace Kestrin;

std::string FailureOfReading(const std::string& document) {
    return FailureOf([&document] { ReadDocument(document); });
}

std::string FailureOfValidating(const std::string& document) {
    return FailureOf([&document] {
        std::istringstream stream(document);
        Parser parser(stream, Parser::kValidate);
        while (parser.DownToChild()) {
        }
    });
}

const std::string kReportedError = "FailString Kestrin at file:Source/XML/XMLParser line:416\n";

const std::string kSound = "<?xml version='1.0'?><!DOCTYPE r [<!ENTITY e 'x'>]><r><XSET name='s'>"
                           "<TEXT name='a'>text &e;<![CDATA[y]]></TEXT><DATA name='d' size='2'>"
                           "abcd</DATA></XSET></r>";

TEST(HostileInput, ReportsEveryDocumentThatIsCutOff) {
    ASSERT_EQ(FailureOfReading(kSound), "(done)");
    for (std::size_t length = 0; length < kSound.size(); ++length)
        EXPECT_EQ(FailureOfReading(kSound.substr(0, length)), kReportedError) << length;
}

TEST(HostileInput, ReportsWhatIsNotWellFormedOrJustWarnedOf) {
    for (const char* document :
         {"<a></b>", "<a b='1' b='2'/>", "<a>&unknown;</a>", "<a>\x80</a>", "<a>&#1;</a>", "text",
          "<?xml version='1.0' encoding='no-such'?><a/>", "<a/><b/>", "<a x:b=''/>",
          "<?xml version='1.0' encoding='UTF-16'?><a/>", "\xff\xfe<", "<r xmlns='no uri'/>",
          "<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>",
          "<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r a CDATA ''><!ATTLIST r a CDATA ''>]><r/>"})
        EXPECT_EQ(FailureOfReading(document), kReportedError) << document;
    EXPECT_EQ(FailureOfReading("<?xml version='1.0' encoding='ISO-8859-1'?><XSET name='\xe9'/>"),
              "(done)");
}

std::string Repeated(const std::string& text, int times) {
    std::string repeated;
    while (times-- > 0)
        repeated += text;
    return repeated;
}

TEST(HostileInput, ReadsTreesAsDeepAsLibxml2Allows) {
    const auto nested = [](int depth) {
        return Repeated("<XSET name='x'>", depth) + Repeated("</XSET>", depth);
    };
    const std::string written = WriteSerializedString(*ReadDocument(nested(250)));
    EXPECT_EQ(WriteSerializedString(*ReadDocument(written)), written);
    EXPECT_EQ(FailureOfReading(nested(1000)), kReportedError);

    const auto root = CreateContainer(UString());
    auto deepest = root;
    for (int level = 1; level < 30'000; ++level) {
        deepest->AddItem(CreateContainer(UString()));
        deepest = Child<ContainerItem>(*deepest, 0);
    }
    EXPECT_EQ(FailureOf([&root] { WriteSerializedString(*root); }),
              "FailString Kestrin at file:Source/XML/XMLWriter line:125\n");
}

TEST(HostileInput, StopsEntityBombs) {
    std::string bomb = "<!DOCTYPE r [<!ENTITY a0 'aaaaaaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 12; ++i)
        bomb += "<!ENTITY a" + std::to_string(i) + " '" +
                Repeated("&a" + std::to_string(i - 1) + ";", 10) + "'>";
    for (const char* element : {"<TEXT name='t'>&a11;</TEXT>", "<XSET name='&a11;'/>"})
        EXPECT_EQ(FailureOfReading(bomb + "]>" + element), kReportedError);
}

TEST(HostileInput, EndsAnElementOfTooManyAttributesSoon) {
    const auto element = [](int attributes) {
        std::string text = "<SINT name='\">'";
        for (int i = 0; i < attributes; ++i)
            text += " a" + std::to_string(i) + "='>'";
        return text + "/>";
    };
    EXPECT_EQ(ReadElements(element(5'000))->GetItems().front()->GetAttributes().size(), 5'001u);
    EXPECT_EQ(FailureOfReading(element(100'000)), kReportedError);
    const std::string quotes = Repeated("'\"", 30'000);
    EXPECT_EQ(FailureOfReading("<r a='" + Repeated("\"", 30'000) + "'>" + quotes + "<!--" + quotes +
                               "--></r>"),
              "(done)");
}

TEST(HostileInput, EndsSoonWhereAttributesAreDeclaredOrWrittenInWideUnits) {
    const auto declared = [](int attributes, int elements) {
        std::string text = "<!DOCTYPE r [<!ATTLIST x";
        for (int i = 0; i < attributes; ++i)
            text += " a" + std::to_string(i) + " CDATA ''";
        return text + ">]><r>" + Repeated("<x/>", elements) + "</r>";
    };
    EXPECT_EQ(FailureOfReading(declared(20, 10'000)), "(done)");
    EXPECT_EQ(FailureOfReading(declared(4'000, 1'000)), kReportedError);
    EXPECT_EQ(FailureOfReading(declared(100'000, 1)), kReportedError);

    const auto wide = [](int attributes) {
        std::string text = "\xFF\xFE";
        const auto add = [&text](const std::string& ascii) {
            for (const char c : ascii)
                text += {c, '\0'};
        };
        add("<XSET name='x'><TEXT name='t'>" + std::string(20'000, 't') + "</TEXT><x");
        for (int i = 0; i < attributes; ++i) {
            add(" a" + std::to_string(i) + "='");
            text += "\x3C\x3C'"; // one unit that looks like two "<"
            text += '\0';
        }
        add("/></XSET>");
        return text;
    };
    EXPECT_EQ(FailureOfReading(wide(1'000)), "(done)");
    EXPECT_EQ(FailureOfReading(wide(100'000)), kReportedError);
}

int gForeignRequests = 0;

/// Counts what libxml2 is asked to open for the rest of the process.
xmlParserInputPtr CountRequest(const char*, const char*, xmlParserCtxtPtr) {
    ++gForeignRequests;
    return nullptr;
}

TEST(HostileInput, OpensNothingButItsStream) {
    const TemporaryFolder folder;
    const std::string file = (folder / "r.dtd").string();
    std::ofstream(file) << "<!ELEMENT r ANY>";
    const auto before = xmlGetExternalEntityLoader();
    xmlSetExternalEntityLoader(CountRequest);
    for (const std::string& url : {file, "file://" + file, std::string("http://localhost:1/x")}) {
        const std::string type = "<!DOCTYPE r SYSTEM '" + url + "'";
        EXPECT_EQ(FailureOfReading(type + "[<!ENTITY e SYSTEM '" + url + "'>]><r>&e;</r>"),
                  kReportedError);
        EXPECT_EQ(FailureOfReading(type + "[<!ENTITY % p SYSTEM '" + url + "'> %p;]><r/>"),
                  kReportedError);
        // Without validation the document stands without its DTD.
        EXPECT_EQ(FailureOfReading(type + "><r/>"), "(done)");
        EXPECT_EQ(FailureOfValidating(type + "><r/>"), kReportedError);
    }
    EXPECT_EQ(gForeignRequests, 0);

    // Meanwhile other users of libxml2 have their own.
    std::istringstream stream("<r/>");
    Parser parser(stream, Parser::kDontValidate);
    parser.DownToChild();
    xmlLoadExternalEntity("x", nullptr, nullptr);
    EXPECT_EQ(gForeignRequests, 1);
    xmlSetExternalEntityLoader(before);
}

TEST(HostileInput, ValidatesAgainstTheInternalSubsetOnly) {
    EXPECT_EQ(FailureOfValidating("<!DOCTYPE r [<!ELEMENT r EMPTY>]><r/>"), "(done)");
    EXPECT_EQ(FailureOfValidating("<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><x/></r>"), kReportedError);
    EXPECT_EQ(FailureOfValidating("<r/>"), kReportedError);
}

} // namespace
