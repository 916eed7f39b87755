#include "XML/XMLSerializable.h"

#include "tests/Source/XML/Documents.h"

namespace {

using namespace Kestrin;

TEST(ContainerItem, FindsTheLastOfNamesakesAndKeepsThemAll) {
    const auto container = ReadElements("<TEXT name='a' value='1'/><SINT name='b'/>"
                                        "<TEXT name='a' value='2'/>");
    EXPECT_EQ(ChildNames(*container), "a b a ");
    EXPECT_EQ(TextOf(*container, "a"), "2");
    container->RemoveItem(container->GetUStringItem(U("a")));
    container->RemoveItem(CreateUString(U("a"), U("1")));
    container->RemoveItem({});
    EXPECT_EQ(FailureOf([&container] { container->AddItem(container); }),
              "FailString XMLSerializable at file:Source/XML/XMLSerializable line:50\n");
    EXPECT_EQ(ChildNames(*container), "a b ");
    EXPECT_EQ(TextOf(*container, "a"), "1");

    // A later namesake of another type hides the earlier one.
    EXPECT_NE(container->GetItem(Item::kSInt32, U("b")), nullptr);
    EXPECT_EQ(TextOf(*container, "b"), "(none)");
    container->AddItem(CreateUString(U("b"), U("x")));
    EXPECT_EQ(container->GetItem(Item::kSInt32, U("b")), nullptr);
}

TEST(ContainerItem, TellsAChangeAnywhereBeneathItUntilItIsWritten) {
    const auto root = ReadElements("<XSET name='inner'><TEXT name='t'>x</TEXT></XSET>");
    EXPECT_FALSE(root->HasChanged());
    const auto inner = Child<ContainerItem>(*root, 0);
    Child<UStringItem>(*inner, 0)->SetValue(U("z"));
    EXPECT_TRUE(root->HasChanged());
    WriteSerializedString(*root);
    EXPECT_FALSE(root->HasChanged());
    inner->AddItem(CreateUString(U("u"), U("y")));
    EXPECT_TRUE(root->HasChanged());
    WriteSerializedString(*root);
    Child<UStringItem>(*inner, 0)->SetAttributes({});
    EXPECT_TRUE(root->HasChanged());
}

TEST(ContainerItem, ReleasesWhatItAloneHoldsTheLastFirstAtAnyDepth) {
    std::string destroyed;
    const auto witness = [&destroyed](const char* name) {
        return boost::shared_ptr<Item>(new SInt32Item(U(name), 0), [&destroyed](Item* item) {
            destroyed += item->GetName().utf8_str();
            delete item;
        });
    };
    const auto kept = CreateContainer(U("kept"));
    kept->AddItem(witness("K"));
    auto root = CreateContainer(U("root"));
    ContainerItem* deepest = root.get();
    for (int depth = 0; depth < 200'000; ++depth) {
        deepest->AddItem(CreateContainer(UString()));
        deepest = Child<ContainerItem>(*deepest, 0).get();
    }
    deepest->AddItem(witness("1"));
    deepest->AddItem(kept);
    deepest->AddItem(witness("2"));
    root->AddItem(witness("3"));
    root.reset();
    EXPECT_EQ(destroyed, "321");
}

} // namespace
