#include "XML/XMLParser.h"

#include "tests/XML/Documents.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <fstream>
#include <functional>

namespace {

using namespace Kestrin;

/// What reading prints when it throws -50; "(read)" when it does not.
std::string FailureOf(const std::function<void()>& read) {
    CapturedOutput output;
    try {
        read();
    } catch (int fault) {
        EXPECT_EQ(fault, -50);
        return output.Text();
    }
    return "(read)";
}

std::string FailureOf(const std::string& document) {
    return FailureOf([&document] { ReadDocument(document); });
}

const std::string kReportedError = "FailString Kestrin at file:Source/XML/XMLParser line:416\n";

const std::string kSound = "<?xml version='1.0'?><!DOCTYPE r [<!ENTITY e 'x'>]><r><XSET name='s'>"
                           "<TEXT name='a'>text &e;<![CDATA[y]]></TEXT><DATA name='d' size='2'>"
                           "abcd</DATA></XSET></r>";

TEST(HostileInput, ReportsEveryDocumentThatIsCutOff) {
    ASSERT_EQ(FailureOf(kSound), "(read)");
    for (std::size_t length = 0; length < kSound.size(); ++length)
        EXPECT_EQ(FailureOf(kSound.substr(0, length)), kReportedError) << length;
}

TEST(HostileInput, ReportsWhatIsNotWellFormed) {
    for (const char* document :
         {"<a></b>", "<a b='1' b='2'/>", "<a>&unknown;</a>", "<a>\x80</a>", "<a>&#1;</a>", "text",
          "<?xml version='1.0' encoding='no-such'?><a/>", "<a/><b/>", "<a x:b=''/>", "<r>\0</r>",
          "<?xml version='1.0' encoding='UTF-16'?><a/>", "\xff\xfe<\0a\0"})
        EXPECT_EQ(FailureOf(document), kReportedError) << document;
    EXPECT_EQ(FailureOf("<?xml version='1.0' encoding='ISO-8859-1'?><XSET name='\xe9'/>"),
              "(read)");
}

TEST(HostileInput, TakesAWarningForAnError) {
    EXPECT_EQ(
        FailureOf("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r a CDATA ''><!ATTLIST r a CDATA ''>]>"
                  "<r/>"),
        kReportedError);
    EXPECT_EQ(FailureOf("<r xmlns='no uri'/>"), kReportedError);
}

std::string Nested(const std::string& start, const std::string& end, int depth) {
    std::string document;
    for (int i = 0; i < depth; ++i)
        document += start;
    for (int i = 0; i < depth; ++i)
        document += end;
    return document;
}

TEST(HostileInput, ReadsTreesAsDeepAsLibxml2Allows) {
    const std::string deep = Nested("<XSET name='x'>", "</XSET>", 250);
    const auto tree = ReadDocument(deep);
    ASSERT_NE(tree, nullptr);
    const std::string written = WriteSerializedString(*tree);
    EXPECT_EQ(WriteSerializedString(*ReadDocument(written)), written);
    EXPECT_EQ(FailureOf(Nested("<w>", "</w>", 250)), "(read)");
    EXPECT_EQ(FailureOf(Nested("<XSET name='x'>", "</XSET>", 1000)), kReportedError);
    EXPECT_EQ(FailureOf(Nested("<w>", "</w>", 100'000)), kReportedError);
}

TEST(HostileInput, StopsEntityBombs) {
    std::string bomb = "<!DOCTYPE r [<!ENTITY a0 'aaaaaaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 12; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " '";
        for (int copies = 0; copies < 10; ++copies)
            bomb += inner;
        bomb += "'>";
    }
    EXPECT_EQ(FailureOf(bomb + "]><r><XSET name='s'><TEXT name='t'>&a11;</TEXT></XSET></r>"),
              kReportedError);
    EXPECT_EQ(FailureOf(bomb + "]><r><XSET name='&a11;'/></r>"), kReportedError);
    EXPECT_EQ(FailureOf("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>"),
              kReportedError);
}

/// Counts what libxml2 is asked to open for the rest of the process.
class ForeignLoader {
public:
    ForeignLoader() { xmlSetExternalEntityLoader(Count); }
    ~ForeignLoader() { xmlSetExternalEntityLoader(fBefore); }
    static inline int sRequests = 0;

    static xmlParserInputPtr Count(const char*, const char*, xmlParserCtxtPtr) {
        ++sRequests;
        return nullptr;
    }

private:
    xmlExternalEntityLoader fBefore = xmlGetExternalEntityLoader();
};

TEST(HostileInput, OpensNothingButItsStream) {
    const TemporaryFolder folder;
    const std::string secret = (folder / "secret").string();
    std::ofstream(secret) << "secret";
    std::ofstream(folder / "r.dtd") << "<!ELEMENT r ANY>";
    const ForeignLoader others;
    ForeignLoader::sRequests = 0;

    for (const std::string& url :
         {secret, "file://" + secret, std::string("http://localhost:1/x")}) {
        const std::string system = "SYSTEM '" + url + "'";
        EXPECT_EQ(FailureOf("<!DOCTYPE r [<!ENTITY e " + system +
                            ">]><r><XSET name='s'>"
                            "<TEXT name='t'>&e;</TEXT></XSET></r>"),
                  kReportedError);
        EXPECT_EQ(FailureOf("<!DOCTYPE r [<!ENTITY % p " + system + "> %p;]><r/>"), kReportedError);
        // Without validation the document stands without its DTD.
        EXPECT_EQ(FailureOf("<!DOCTYPE r " + system + "><r/>"), "(read)");
    }
    const std::string validated = "<!DOCTYPE r SYSTEM '" + (folder / "r.dtd").string() + "'><r/>";
    EXPECT_EQ(FailureOf([&validated] {
                  std::istringstream stream(validated);
                  Parser parser(stream, Parser::kValidate);
                  parser.DownToChild();
              }),
              kReportedError);
    EXPECT_EQ(ForeignLoader::sRequests, 0);
}

TEST(HostileInput, LeavesOtherUsersOfLibxml2Alone) {
    const ForeignLoader others;
    ForeignLoader::sRequests = 0;
    const std::string document = "<!DOCTYPE r [<!ENTITY e SYSTEM 'x'>]><r>&e;</r>";
    std::istringstream stream("<r/>");
    {
        Parser parser(stream, Parser::kDontValidate);
        parser.DownToChild();
        xmlFreeDoc(xmlReadMemory(document.c_str(), static_cast<int>(document.size()), nullptr,
                                 nullptr,
                                 XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
        EXPECT_EQ(ForeignLoader::sRequests, 1);
    }
    EXPECT_EQ(xmlGetExternalEntityLoader(), &ForeignLoader::Count);
}

TEST(HostileInput, ValidatesAgainstTheInternalSubsetOnly) {
    const auto validate = [](const std::string& document) {
        return FailureOf([&document] {
            std::istringstream stream(document);
            Parser parser(stream, Parser::kValidate);
            while (parser.DownToChild()) {
            }
            parser.UpToParent();
            parser.DownToChild();
        });
    };
    EXPECT_EQ(validate("<!DOCTYPE r [<!ELEMENT r EMPTY>]><r/>"), "(read)");
    EXPECT_EQ(validate("<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><x/></r>"), kReportedError);
    EXPECT_EQ(validate("<r/>"), kReportedError);
}

/// Delivers a text one byte at a time and then ends, breaks or throws.
class Dripping : public std::streambuf {
public:
    Dripping(std::string text, bool breaks)
        : fText(std::move(text))
        , fBreaks(breaks) {}

protected:
    int_type underflow() override {
        if (fNext < fText.size()) {
            setg(&fText[fNext], &fText[fNext], &fText[fNext] + 1);
            ++fNext;
            return traits_type::to_int_type(*gptr());
        }
        if (fBreaks)
            throw std::runtime_error("the disk is gone");
        return traits_type::eof();
    }

private:
    std::string fText;
    std::size_t fNext = 0;
    bool fBreaks;
};

TEST(HostileInput, TakesStreamsThatDripFailOrThrow) {
    const auto read = [](const std::string& text, bool breaks, bool throws) {
        return FailureOf([&] {
            Dripping buffer(text, breaks);
            std::istream stream(&buffer);
            if (throws)
                stream.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
            ReadContainerFromFile(&stream, kDefaultLanguage);
        });
    };
    EXPECT_EQ(read(kSound, false, false), "(read)");
    EXPECT_EQ(read(kSound, false, true), "(read)");
    for (bool throws : {false, true}) {
        EXPECT_EQ(read("", true, throws), kReportedError);
        EXPECT_EQ(read(kSound.substr(0, kSound.size() / 2), true, throws), kReportedError);
    }
    std::ifstream closed;
    EXPECT_EQ(FailureOf([&closed] { ReadContainerFromFile(&closed, kDefaultLanguage); }),
              kReportedError);
}

} // namespace
