#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <chrono>

namespace {

class HostileDatabaseTest : public MidiTest {
protected:
    const MIDIDeviceRef fDevice = AddInterface("Interface", 1);
    const std::string fObject = std::to_string(fDevice);
};

TEST_F(HostileDatabaseTest, GivesWhatIsWellFormed) {
    // Tables that have none of the rules that ours have.
    RunSQL("DROP TABLE hardware; DROP TABLE properties; DROP TABLE objects;"
           "CREATE TABLE objects(id,type,owner,position,unique_id,pending_since);"
           "CREATE TABLE properties(object,key,value);"
           "CREATE TABLE hardware(object,kind,serial,place,manufacturer,name);"
           "INSERT INTO objects VALUES(1,0,NULL,0,101,NULL),(2,1,1,0,102,NULL),(3,2,2,0,103,NULL),"
           "('x',0,NULL,0,1,NULL),(4,'y',NULL,0,104,NULL),(5,0,NULL,'z',105,NULL),"
           "(6,0,NULL,0,4294967296,NULL),(-7,0,NULL,0,107,NULL),(8,0,NULL,0,0,NULL),"
           "(9,0,NULL,0,101,NULL),(1,0,NULL,0,109,NULL),"  // IDs that are taken
           "(20,1,21,0,120,NULL),(21,1,20,0,121,NULL),"    // owners in a circle
           "(22,1,22,0,122,NULL),(23,0,1,0,123,NULL),"     // its own owner; an owned device
           "(24,2,99,0,124,NULL),(25,2,1,0,125,NULL),"     // no owner; a device's endpoint
           "(26,18,2,0,126,NULL),(27,18,NULL,0,127,NULL)," // external below a plain entity
           "(28,77,NULL,0,128,NULL),(NULL,0,NULL,0,129,NULL);"
           "INSERT INTO properties VALUES(1,'name','Whole'),(1,'name','Twice'),(1,'float',1.5),"
           "(1,'null',NULL),(1,'big',4294967296),(1,x'6b',1),(1,'uniqueID',5),(99,'name','Lost'),"
           "('1','kept','no'),(3,'name',CAST(x'41ff42' AS TEXT)),(1,'data',x'010203');"
           "INSERT INTO hardware VALUES(1,1,1,1,1,1)");
    ASSERT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseReady);
    ASSERT_EQ(MIDIGetNumberOfDevices(), 1u);
    EXPECT_EQ(NameOf(1), "Whole");
    EXPECT_EQ(ID(1), 101);
    EXPECT_EQ(KestrinMIDIObjectGetNumberOfProperties(1), 2u);
    EXPECT_EQ(SourceNames(), std::vector<std::string>{"A\uFFFDB"});
    EXPECT_EQ(MIDIDeviceGetNumberOfEntities(1), 1u);
    for (MIDIObjectRef ref = 4; ref < 30; ++ref)
        EXPECT_EQ(IntegerOf(ref, kMIDIPropertyUniqueID), kMIDIObjectNotFound) << ref;
    EXPECT_NE(TextOf(KestrinMIDICopyDatabaseDamage()), "");
    // Nor do changes to it do harm.
    MIDIObjectSetIntegerProperty(1, CFSTR("group"), 1);
    MIDIDeviceAddEntity(1, CFSTR("More"), 0, 1, 1, nullptr);
    MIDISetupRemoveDevice(1);
}

TEST_F(HostileDatabaseTest, EndsWithManyPropertiesOnOneObject) {
    RunSQL("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<200000) "
           "INSERT INTO properties SELECT " +
           fObject + ",'key'||i,i FROM n");
    EXPECT_EQ(MIDIGetNumberOfSources(), 1u);
    const ItemCount count = KestrinMIDIObjectGetNumberOfProperties(fDevice);
    EXPECT_LE(count, 4096u);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(TextOf(KestrinMIDIObjectCopyPropertyKey(fDevice, 1)), "key10");
    for (ItemCount i = 0; i < count; ++i)
        CFRelease(KestrinMIDIObjectCopyPropertyKey(fDevice, i));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(MIDIObjectSetIntegerProperty(fDevice, CFSTR("one more"), 1), kMIDINotPermitted);
}

TEST_F(HostileDatabaseTest, TakesNoMoreThanTheFileHolds) {
    RunSQL("DROP TABLE properties;"
           "CREATE TABLE properties(object,key,value AS (zeroblob(1000000)));"
           "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<100) "
           "INSERT INTO properties SELECT " +
           fObject + ",'key'||i FROM n");
    EXPECT_EQ(MIDIGetNumberOfSources(), 1u);
    EXPECT_EQ(KestrinMIDIObjectGetNumberOfProperties(fDevice), 0u);
}

} // namespace
