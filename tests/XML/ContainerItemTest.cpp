#include "XML/XMLSerializable.h"

#include "tests/XML/Documents.h"
#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <boost/smart_ptr/weak_ptr.hpp>

namespace {

using namespace Kestrin;

TEST(ContainerItem, FindsTheLastOfNamesakesAndKeepsThemAll) {
    const auto container = CreateContainer(U("c"));
    const auto first = CreateUString(U("a"), U("1"));
    const auto second = CreateUString(U("a"), U("2"));
    container->AddItem(first);
    container->AddItem(CreateUString(U("b"), U("x")));
    container->AddItem(second);
    EXPECT_EQ(ChildNames(*container), "a b a ");
    EXPECT_EQ(container->GetUStringItem(U("a")), second);

    container->RemoveItem(second);
    EXPECT_EQ(ChildNames(*container), "a b ");
    EXPECT_EQ(container->GetUStringItem(U("a")), first);

    container->RemoveItem(CreateUString(U("a"), U("1")));
    container->RemoveItem({});
    EXPECT_EQ(ChildNames(*container), "a b ");

    container->RemoveItem(first);
    EXPECT_EQ(container->GetUStringItem(U("a")), nullptr);
    EXPECT_EQ(TextOf(*container, "b"), "x");
}

TEST(ContainerItem, FindsNothingUnderANameOfAnotherType) {
    const auto container = CreateContainer(U("c"));
    container->AddItem(boost::shared_ptr<Item>(new SInt32Item(U("n"), 1)));
    container->AddItem(CreateUString(U("t"), U("x")));
    EXPECT_EQ(container->GetItem(Item::kSInt32, U("t")), nullptr);
    EXPECT_EQ(container->GetUStringItem(U("n")), nullptr);
    EXPECT_NE(container->GetItem(Item::kSInt32, U("n")), nullptr);
    EXPECT_EQ(container->GetItem(Item::kSInt32, U("")), nullptr);

    // A later namesake of another type hides the earlier one.
    container->AddItem(CreateUString(U("n"), U("x")));
    EXPECT_EQ(container->GetItem(Item::kSInt32, U("n")), nullptr);
}

TEST(ContainerItem, FailsWhenAddedToItself) {
    const auto container = CreateContainer(U("c"));
    CapturedOutput output;
    EXPECT_THROW(container->AddItem(container), int);
    EXPECT_EQ(output.Text(),
              "FailString XMLSerializable at file:Source/XML/XMLSerializable line:50\n");
    EXPECT_TRUE(container->GetItems().empty());
}

TEST(ContainerItem, TellsAChangeAnywhereBeneathItUntilItIsWritten) {
    const auto root = ReadElements("<XSET name='inner'><TEXT name='t'>x</TEXT></XSET>");
    EXPECT_FALSE(root->HasChanged());
    const auto inner = Child<ContainerItem>(*root, 0);
    inner->AddItem(CreateUString(U("u"), U("y")));
    EXPECT_TRUE(root->HasChanged());
    WriteSerializedString(*root);
    EXPECT_FALSE(root->HasChanged());

    Child<UStringItem>(*inner, 0)->SetValue(U("z"));
    EXPECT_TRUE(root->HasChanged());
    WriteSerializedString(*root);
    inner->RemoveItem(inner->GetItems().front());
    EXPECT_FALSE(root->HasChanged());
}

/// Tells when it is destroyed.
class Witness : public Item {
public:
    Witness(const std::string& name, std::string& destroyed)
        : Item(FourCharCode("WITN"), U(name))
        , fDestroyed(destroyed) {}
    ~Witness() override { fDestroyed += GetName().utf8_str() + " "; }
    void DoItemWrite(Writer&) const override {}

private:
    std::string& fDestroyed;
};

TEST(ContainerItem, ReleasesItsChildrenTheLastFirst) {
    std::string destroyed;
    auto root = CreateContainer(U("root"));
    const auto add = [&destroyed](ContainerItem& container, const std::string& name) {
        container.AddItem(boost::shared_ptr<Item>(new Witness(name, destroyed)));
    };
    auto inner = CreateContainer(U("inner"));
    auto kept = CreateContainer(U("kept"));
    add(*root, "1");
    add(*inner, "2");
    add(*inner, "3");
    add(*kept, "held");
    root->AddItem(inner);
    root->AddItem(kept);
    add(*root, "4");
    const boost::weak_ptr<ContainerItem> watched = inner;
    inner.reset();

    root.reset();
    EXPECT_EQ(destroyed, "4 3 2 1 ");
    EXPECT_TRUE(watched.expired());
    kept.reset();
    EXPECT_EQ(destroyed, "4 3 2 1 held ");
}

TEST(ContainerItem, IsDestroyedAtAnyDepth) {
    auto root = CreateContainer(U("root"));
    ContainerItem* deepest = root.get();
    for (int depth = 0; depth < 200'000; ++depth) {
        const auto next = CreateContainer(UString());
        deepest->AddItem(next);
        deepest = next.get();
    }
    auto leaf = CreateUString(U("leaf"), U("x"));
    const boost::weak_ptr<Item> bottom = leaf;
    deepest->AddItem(leaf);
    leaf.reset();
    root.reset();
    EXPECT_TRUE(bottom.expired());
}

} // namespace
