#include "XML/XMLSerializable.h"

#include "tests/XML/Documents.h"
#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using namespace Kestrin;

constexpr unsigned int kFrench = FourCharCode("frfr");

std::string Document(const std::string& elements) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<resource_list>\n" + elements +
           "</resource_list>\n";
}

/// One container with that one child, as it is written.
std::string WrittenWith(const boost::shared_ptr<Item>& child) {
    const auto container = CreateContainer(U("s"));
    container->AddItem(child);
    return WriteSerializedString(*container);
}

std::string InContainer(const std::string& lines) {
    return Document("\t<XSET name=\"s\">\n" + lines + "\t</XSET>\n");
}

TEST(ItemFormat, ReadsEveryTypeAndWritesItBack) {
    const std::string document = InContainer("\t\t<SINT name=\"i\" value=\"-7\"/>\n"
                                             "\t\t<DBLE name=\"d\" value=\"2.500000\"/>\n"
                                             "\t\t<OSTY name=\"o\" value=\"TEXT\"/>\n"
                                             "\t\t<TEXT name=\"t\">a &lt; b</TEXT>\n"
                                             "\t\t<DATA name=\"r\" size=\"3\">\n"
                                             "\t\t\t00ff10\n"
                                             "\t\t</DATA>\n"
                                             "\t\t<XSET name=\"c\"/>\n");
    const auto read = ReadDocument(document);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(Child<SInt32Item>(*read, 0)->GetValue(), -7);
    EXPECT_EQ(Child<DoubleItem>(*read, 1)->GetValue(), 2.5);
    EXPECT_EQ(Child<OSTypeItem>(*read, 2)->GetValue(), FourCharCode("TEXT"));
    EXPECT_EQ(Child<UStringItem>(*read, 3)->GetValue(), U("a < b"));
    const auto raw = Child<RawDataItem>(*read, 4)->GetValue();
    ASSERT_EQ(raw->size, 3u);
    EXPECT_EQ(std::string(raw->data.get(), raw->data.get() + 3), std::string("\x00\xff\x10", 3));
    EXPECT_TRUE(Child<ContainerItem>(*read, 5)->GetItems().empty());
    EXPECT_EQ(WriteSerializedString(*read), document);
}

TEST(ItemFormat, KeepsValuesThatNeedNoElementText) {
    const auto read = ReadElements("<TEXT name='a' value=''/><TEXT name='b' value='v'>text</TEXT>"
                                   "<SINT name='c' value='4294967297'/><SINT name='d'/>"
                                   "<DBLE name='e' value='1e300'/><OSTY name='f' value='ab'/>");
    EXPECT_EQ(TextOf(*read, "a"), "");
    EXPECT_EQ(TextOf(*read, "b"), "v");
    EXPECT_EQ(Child<SInt32Item>(*read, 2)->GetValue(), 1);
    EXPECT_EQ(Child<SInt32Item>(*read, 3)->GetValue(), 0);
    EXPECT_EQ(Child<DoubleItem>(*read, 4)->GetValue(), 1e300);
    EXPECT_EQ(Child<OSTypeItem>(*read, 5)->GetValue(), 0x61620000u);
}

TEST(ItemFormat, LooksThroughWrappersAndUnknownElements) {
    CapturedOutput output;
    const auto read = ReadElements("<group><TEXT name='a'>1</TEXT><deeper><TEXT name='b'>2</TEXT>"
                                   "</deeper></group><WHAT name='w'><TEXT name='c'>3</TEXT></WHAT>"
                                   "<TEXT name='leaf' value='4'><SINT name='in'/></TEXT>");
    EXPECT_EQ(output.Text(), "ParseSerialXML: unknown type!");
    EXPECT_EQ(ChildNames(*read), "a b c in leaf ");
}

TEST(ItemFormat, HasAContainerOrNothingForItsResult) {
    EXPECT_EQ(ReadDocument("<TEXT name='t'>x</TEXT>"), nullptr);
    EXPECT_EQ(ReadDocument("<r><TEXT name='t'>x</TEXT><XSET name='s'/></r>"), nullptr);
    EXPECT_EQ(ReadDocument("<resource_list/>"), nullptr);
    EXPECT_EQ(ReadContainerFromFile(nullptr, kDefaultLanguage), nullptr);
    EXPECT_EQ(ReadDocument("<XSET name='s'/>")->GetName(), U("s"));
}

TEST(ItemFormat, PrefersTheWantedLanguage) {
    const std::string entries =
        "<TEXT name='a' value='en'/><TEXT name='a' lang='frfr' value='fr'/>"
        "<TEXT name='b' value='en'/><SINT name='x'/><TEXT name='b' lang='frfr' value='fr'/>"
        "<TEXT name='c' value='en'/><TEXT name='c' lang='dede' value='de'/>"
        "<TEXT name='c' lang='frfr' value='fr'/><TEXT name='d' lang='frfr' value='fr'/>"
        "<SINT name='e'/><TEXT name='e' lang='frfr' value='fr'/>";
    const auto english = ReadElements(entries);
    EXPECT_EQ(ChildNames(*english), "a b x c e ");
    EXPECT_EQ(TextOf(*english, "a"), "en");

    // Only what directly follows its entry takes its place; "c" lost its entry to the German one.
    const auto french = ReadElements(entries, kFrench);
    EXPECT_EQ(ChildNames(*french), "a b x b c c d e e ");
    for (const char* name : {"a", "b", "c", "d", "e"})
        EXPECT_EQ(TextOf(*french, name), "fr") << name;
}

TEST(ItemFormat, LeavesOutOtherPlatforms) {
    const auto read = ReadElements("<SINT name='a' platform='Win3'><SINT name='in'/></SINT>"
                                   "<group platform=''><SINT name='b'/></group>"
                                   "<SINT name='c' platform='MacX'/>");
    EXPECT_EQ(ChildNames(*read), "c ");
}

TEST(ItemFormat, KeepsOneBlankAndDropsBlanksAlone) {
    const auto read = ReadElements(
        "<TEXT name='a'> </TEXT><TEXT name='b'> \n\t </TEXT><TEXT name='c'>XML_SPACE_ENCODE</TEXT>"
        "<TEXT name='d'><![CDATA[ ]]></TEXT><TEXT name='e' value=' '/><TEXT name='f'>  x </TEXT>");
    EXPECT_EQ(TextOf(*read, "a") + TextOf(*read, "b"), "");
    for (const char* name : {"c", "d", "e"})
        EXPECT_EQ(TextOf(*read, name), " ") << name;
    EXPECT_EQ(TextOf(*read, "f"), "  x ");
    EXPECT_EQ(WrittenWith(CreateUString(U("t"), U(" "))),
              InContainer("\t\t<TEXT name=\"t\">XML_SPACE_ENCODE</TEXT>\n"));
}

TEST(ItemFormat, WritesRawDataInLinesOfSixteenBytes) {
    std::string bytes;
    for (int i = 0; i < 20; ++i)
        bytes += static_cast<char>(i * 13);
    const std::string written = WrittenWith(CreateRawData(U("r"), RawData(bytes)));
    EXPECT_EQ(written, InContainer("\t\t<DATA name=\"r\" size=\"20\">\n"
                                   "\t\t\t000d1a2734414e5b6875828f9ca9b6c3\n"
                                   "\t\t\td0ddeaf7\n"
                                   "\t\t</DATA>\n"));
    const auto read = Child<RawDataItem>(*ReadDocument(written), 0)->GetValue();
    EXPECT_EQ(std::string(read->data.get(), read->data.get() + read->size), bytes);

    EXPECT_EQ(WrittenWith(CreateRawData(U("r"), {})), InContainer("\t\t<DATA name=\"r\"/>\n"));
    EXPECT_EQ(
        WrittenWith(CreateRawData(U("r"), boost::shared_ptr<RawDataBuffer>(new RawDataBuffer))),
        InContainer("\t\t<DATA name=\"r\"/>\n"));
    EXPECT_EQ(WrittenWith(CreateRawData(U("r"), RawData(""))),
              InContainer("\t\t<DATA name=\"r\" size=\"0\"/>\n"));
}

TEST(ItemFormat, FillsRawDataOfTheSizeThatTheFileGives) {
    const auto read = ReadElements("<DATA name='more' size='4'>a b:c d</DATA>"
                                   "<DATA name='less' size='1'>abcdef</DATA>"
                                   "<DATA name='none'>ab</DATA><DATA name='bare' size='2'/>");
    const auto bytes = [&read](std::size_t index) {
        const auto buffer = Child<RawDataItem>(*read, index)->GetValue();
        return std::string(buffer->data.get(), buffer->data.get() + buffer->size);
    };
    EXPECT_EQ(bytes(0), std::string("\xab\xcd\0\0", 4));
    EXPECT_EQ(bytes(1), "\xab");
    EXPECT_EQ(bytes(2), "");
    EXPECT_EQ(bytes(3), std::string(2, '\0'));

    CapturedOutput output;
    EXPECT_NO_THROW(ReadElements("<DATA name='r' size='1048578'>abcd</DATA>"));
    for (const char* size : {"1048579", "4294967295", "-1", "99999999999999999999"})
        EXPECT_THROW(ReadElements(std::string("<DATA name='r' size='") + size + "'>abcd</DATA>"),
                     int)
            << size;
}

TEST(ItemFormat, WritesCommentsAndForeignAttributesInFrontOfItsOwn) {
    const auto read = ReadElements("<TEXT size='9' name='t' lang='enus' x='&lt;1>' value='v'/>");
    const auto text = Child<UStringItem>(*read, 0);
    text->SetComment(U("a--b---c-"));
    EXPECT_EQ(WriteSerializedString(*read),
              InContainer("\t\t<!--a-b-c- -->\n"
                          "\t\t<TEXT name=\"t\" lang=\"enus\" x=\"&lt;1&gt;\">v</TEXT>\n"));
}

/// A tree of every type, with the texts that XML makes the most of.
class RandomTree {
public:
    explicit RandomTree(unsigned int seed)
        : fRandom(seed) {}

    boost::shared_ptr<ContainerItem> Make(int depth) {
        const auto container = CreateContainer(Text());
        for (int children = Below(6); children > 0; --children)
            container->AddItem(MakeItem(depth));
        return container;
    }

private:
    int Below(int limit) { return static_cast<int>(fRandom() % static_cast<unsigned int>(limit)); }

    UString Text() {
        static const std::string pieces[] = {"a",          "&amp;", "<", "]]>",    "\"'",
                                             "\r\n",       "\t",    "é", "\u2026", " b",
                                             "\U00010042", "-- x",  "%s"};
        std::string text;
        for (int count = Below(5); count > 0; --count)
            text += pieces[Below(std::size(pieces))];
        // Blanks alone would not survive.
        return U(text.find_first_not_of(" \t\r\n") == std::string::npos ? "" : text);
    }

    boost::shared_ptr<Item> MakeItem(int depth) {
        switch (Below(depth > 0 ? 7 : 5)) {
        case 0:
            return boost::shared_ptr<Item>(new SInt32Item(Text(), static_cast<int>(fRandom())));
        case 1:
            return boost::shared_ptr<Item>(new DoubleItem(Text(), Below(1000) / 8.0 - 50));
        case 2:
            return boost::shared_ptr<Item>(new OSTypeItem(Text(), 0x20202020u + fRandom() % 90));
        case 3:
            return CreateRawData(Text(),
                                 RawData(std::string(Below(40), static_cast<char>(Below(256)))));
        case 4:
            return CreateUString(Text(), Text());
        default:
            return Make(depth - 1);
        }
    }

    std::mt19937 fRandom;
};

TEST(ItemFormat, BringsRandomTreesBackAsTheyWere) {
    for (unsigned int seed = 0; seed < 300; ++seed) {
        const std::string written = WriteSerializedString(*RandomTree(seed).Make(4));
        const auto read = ReadDocument(written);
        ASSERT_NE(read, nullptr) << written;
        ASSERT_EQ(WriteSerializedString(*read), written) << seed;
    }
}

} // namespace
