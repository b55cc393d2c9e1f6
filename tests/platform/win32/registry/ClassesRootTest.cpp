#include "platform/win32/registry/RegistryContract.h"

#include <gmock/gmock.h>

// HKEY_CLASSES_ROOT shows the classes of the user and those of the machine as one tree. It decides at each call.

namespace
{
using ::testing::ElementsAre;

constexpr char Product[] = R"(FraxoPro\Release)";
constexpr char ProductClass[] = R"(Software\Classes\FraxoPro\Release)";

class ClassesRoot : public RegistryContractTest
{
protected:
    ClassesRoot() : RegistryContractTest{ScratchMachine::ClassesRoot::Merged} {}

    void SetUp() override
    {
        RegistryContractTest::SetUp();
        EXPECT_EQ(Create(HKEY_LOCAL_MACHINE, ProductClass, KEY_ALL_ACCESS, m_machines), ERROR_SUCCESS);
        EXPECT_EQ(SetText(m_machines.get(), "Root", "machine"), ERROR_SUCCESS);
        EXPECT_EQ(Open(HKEY_CLASSES_ROOT, Product, KEY_ALL_ACCESS, m_shown), ERROR_SUCCESS);
    }

    /// Only now, so that every case starts with an open handle that knows nothing of the user's copy.
    void CreateTheUsersCopy()
    {
        EXPECT_EQ(Create(HKEY_CURRENT_USER, ProductClass, KEY_ALL_ACCESS, m_users), ERROR_SUCCESS);
        EXPECT_EQ(SetText(m_users.get(), "Root", "user"), ERROR_SUCCESS);
    }

    Key m_machines;
    Key m_users;
    Key m_shown;
};

TEST_F(ClassesRoot, ShowsTheMachinesClassesAndCreatesNewOnesThere)
{
    EXPECT_EQ(Text(m_shown.get(), "Root"), "machine");
    EXPECT_EQ(OpenStatus(HKEY_CLASSES_ROOT, R"(\fraxopro\Release\)"), ERROR_SUCCESS); // here one is allowed in front
    EXPECT_EQ(SetText(m_shown.get(), "Root", "new"), ERROR_SUCCESS);
    EXPECT_EQ(CreateStatus(HKEY_CLASSES_ROOT, R"(FraxoPro\23.00.00)"), ERROR_SUCCESS);
    EXPECT_EQ(CreateStatus(m_shown.get(), "Language"), ERROR_SUCCESS);

    EXPECT_EQ(Text(m_machines.get(), "Root"), "new");
    EXPECT_EQ(OpenStatus(HKEY_LOCAL_MACHINE, R"(Software\Classes\FraxoPro\23.00.00)"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(m_machines.get(), "Language"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(HKEY_CURRENT_USER, R"(Software\Classes\FraxoPro)"), ERROR_FILE_NOT_FOUND);
}

TEST_F(ClassesRoot, ShowsTheUsersCopyAndBehindItTheMachines)
{
    CreateTheUsersCopy();
    EXPECT_EQ(Text(m_shown.get(), "Root"), "user");
    EXPECT_EQ(SetText(m_machines.get(), "Samples", "machine"), ERROR_SUCCESS);
    EXPECT_EQ(Text(m_shown.get(), "Samples"), "machine");

    Key later; // opened when both are there
    EXPECT_EQ(Open(HKEY_CLASSES_ROOT, Product, KEY_READ, later), ERROR_SUCCESS);
    EXPECT_EQ(Text(later.get(), "Root"), "user");
    EXPECT_EQ(Text(later.get(), "Samples"), "machine");

    EXPECT_EQ(CreateStatus(m_users.get(), "Users"), ERROR_SUCCESS);
    EXPECT_EQ(CreateStatus(m_machines.get(), "Machines"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(HKEY_CLASSES_ROOT, R"(FraxoPro\Release\Users)"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(m_shown.get(), "Users"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(later.get(), "Machines"), ERROR_SUCCESS);
}

TEST_F(ClassesRoot, ListsTheUsersItemsAndThenTheMachinesThatDoNotRepeatOne)
{
    CreateTheUsersCopy();
    EXPECT_EQ(SetText(m_machines.get(), "Another", "machine"), ERROR_SUCCESS);
    for (const char* const name : {"B", "z"})
        EXPECT_EQ(CreateStatus(m_users.get(), name), ERROR_SUCCESS);
    for (const char* const name : {"A", "Z"})
        EXPECT_EQ(CreateStatus(m_machines.get(), name), ERROR_SUCCESS);
    EXPECT_THAT(Names(EnumKey, m_shown.get()), ElementsAre("B", "z", "A"));
    EXPECT_THAT(Names(EnumValue, m_shown.get()), ElementsAre("Root", "Another"));
}

TEST_F(ClassesRoot, ChangesTheUsersCopyIfThereIsOne)
{
    CreateTheUsersCopy();
    EXPECT_EQ(SetText(m_shown.get(), "Root", "new"), ERROR_SUCCESS);
    EXPECT_EQ(Text(m_users.get(), "Root"), "new");
    EXPECT_EQ(Text(m_machines.get(), "Root"), "machine");

    EXPECT_EQ(::RegDeleteValueA(m_shown.get(), "Root"), ERROR_SUCCESS);
    EXPECT_EQ(Text(m_shown.get(), "Root"), "machine");
    EXPECT_EQ(::RegDeleteTreeA(HKEY_CLASSES_ROOT, "FraxoPro"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(HKEY_CURRENT_USER, ProductClass), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Text(m_machines.get(), "Root"), "machine");
    EXPECT_EQ(::RegDeleteTreeA(HKEY_CLASSES_ROOT, "FraxoPro"), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(HKEY_LOCAL_MACHINE, ProductClass), ERROR_FILE_NOT_FOUND);
}
} // namespace
