#ifndef _WIN32

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "automation/Variant.h"
#include "platform/Machine.h"
#include "platform/MemoryServices.h"
#include "platform/SystemServices.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

namespace fs = std::filesystem;

class PosixServices : public testing::Test {
protected:
    PosixServices() {
        std::string pattern = (fs::temp_directory_path() / "velmor-test-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    ~PosixServices() override {
        fs::permissions(folder_, fs::perms::owner_all);
        fs::remove_all(folder_);
    }

    std::u16string path(std::u16string_view name) const {
        return fromUtf8(folder_.string()) + u"/" + std::u16string(name);
    }
    void put(const std::string& name, const std::string& bytes) const {
        fs::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
    }
    std::string get(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::size_t count() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }

    fs::path folder_;
    SystemServices system_;
    Files& files_ = system_.services().files;
};

TEST_F(PosixServices, FindsPathsOfWindowsTemplates) {
    put("Texts/Letter.rtf", "letter");
    put("Texts/LETTER.rtf", "shouted");
    put("odd\\name.txt", "odd");
    EXPECT_EQ(files_.read(path(u"Texts\\Letter.rtf")), "letter");
    EXPECT_EQ(files_.read(path(u"texts\\LETTER.RTF")), "shouted");  // the first in sorted order
    EXPECT_EQ(files_.read(path(u"TEXTS/letter.rtf")), "shouted");
    EXPECT_EQ(files_.read(path(u"odd\\name.txt")), "odd");
    EXPECT_FALSE(files_.exists(path(u"Texts\\Letters.rtf")));
    EXPECT_FALSE(files_.exists(path(u"Texts")));
    EXPECT_FALSE(files_.exists(u""));
    EXPECT_EQ(files_.read(path(std::u16string_view(u"Texts/Letter.rtf\0x", 18))), std::nullopt);
    EXPECT_EQ(files_.read(path(u"Texts")), std::nullopt);
}

TEST_F(PosixServices, ChangesOnlyTheFileThatIsNamed) {
    put("Out/Doc.rtf", "mine");
    EXPECT_TRUE(files_.write(path(u"out\\doc.rtf"), "new"));
    EXPECT_EQ(get("Out/Doc.rtf"), "mine");
    EXPECT_EQ(get("Out/doc.rtf"), "new");
    EXPECT_FALSE(files_.remove(path(u"Out/DOC.RTF")));
    EXPECT_TRUE(files_.remove(path(u"out\\doc.rtf")));
    EXPECT_TRUE(files_.append(path(u"OUT\\log"), "a"));
    EXPECT_TRUE(files_.append(path(u"OUT\\log"), "b"));
    EXPECT_EQ(get("Out/log"), "ab");
}

TEST_F(PosixServices, ReplacesWholeOrNotAtAll) {
    put("doc", "a long old text");
    fs::permissions(folder_ / "doc", fs::perms::owner_read | fs::perms::owner_write);
    for (const auto* const target : {"doc", "new"}) {  // an existing one, an absent one
        fs::create_symlink(target, folder_ / "link");
        EXPECT_TRUE(files_.write(path(u"link"), "new"));
        EXPECT_EQ(get(target), "new");
        EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
        fs::remove(folder_ / "link");
    }
    EXPECT_EQ(fs::status(folder_ / "doc").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_FALSE(files_.write(path(u"no/such/folder"), "x"));
    EXPECT_FALSE(files_.write(path(u""), "x"));
    EXPECT_TRUE(files_.write(u"/dev/null", "x"));
    EXPECT_FALSE(files_.write(u"/dev/full", "x"));
    EXPECT_EQ(count(), 2U);  // nothing is left over
}

TEST_F(PosixServices, MakesAFileOnce) {
    EXPECT_TRUE(files_.create(path(u"new")));
    EXPECT_FALSE(files_.create(path(u"new")));
    EXPECT_TRUE(files_.makeFolder(path(u"a\\b\\c")));
    EXPECT_TRUE(files_.makeFolder(path(u"A\\B\\C")));
    EXPECT_TRUE(fs::is_directory(folder_ / "a/b/c"));
    EXPECT_FALSE(fs::exists(folder_ / "A"));
    EXPECT_FALSE(files_.makeFolder(path(u"new/below")));
}

TEST_F(PosixServices, NeverWaitsForAPipeAndRefusesFilesBeyondTheLimit) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.read(path(u"pipe")), std::nullopt);
    EXPECT_FALSE(files_.append(path(u"pipe"), "x"));
    put("huge", "");
    fs::resize_file(folder_ / "huge", std::uintmax_t{1} << 30);  // a sparse file
    EXPECT_TRUE(files_.exists(path(u"huge")));
    EXPECT_EQ(files_.read(path(u"huge")), std::nullopt);
}

TEST_F(PosixServices, KeepsPicturesByteForByte) {
    const std::string png = std::string("\x89PNG\r\n\x1a\n", 8) + "rest";
    put("logo.png", png);
    put("text.png", "BM is not a picture, it only begins like one");
    Pictures& pictures = system_.services().pictures;
    const auto picture = pictures.load(path(u"logo.png"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->typeName(), u"Picture");
    EXPECT_TRUE(pictures.save(picture, path(u"copy.png")));
    EXPECT_EQ(get("copy.png"), png);
    EXPECT_FALSE(pictures.load(path(u"text.png")));
    EXPECT_FALSE(pictures.load(path(u"none")));
    EXPECT_FALSE(pictures.save(nullptr, path(u"copy.png")));
}

TEST_F(PosixServices, GivesNewGuids) {
    Guids& guids = system_.services().guids;
    EXPECT_NE(guids.next(), guids.next());
    std::string guid = toUtf8(guids.next());
    EXPECT_EQ(guid[15], '4');
    for (char& digit : guid) digit = (digit >= '0' && digit <= '9') || (digit >= 'A' && digit <= 'F') ? 'X' : digit;
    EXPECT_EQ(guid, "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}");
}

TEST_F(PosixServices, KnowsItsOwnFolder) {
    EXPECT_EQ(toUtf8(system_.services().folders.component()),
              fs::read_symlink("/proc/self/exe").parent_path().string());
    EXPECT_FALSE(system_.services().folders.machineName().empty());
}

class NativeClasses : public PosixServices {
protected:
    // A machine whose registry file and library are in the test's folder.
    std::unique_ptr<SystemServices> machine(const std::string& registry) {
        fs::create_directories(folder_ / "lib");
        fs::copy_file(VELMOR_TEST_NATIVE_LIBRARY, folder_ / "lib/libtest.so", fs::copy_options::skip_existing);
        put("lib/broken.so", "no library");
        put("registry.reg", "REGEDIT4\n" + registry);
        return std::make_unique<SystemServices>(SystemOptions{path(u"registry.reg"), {path(u"lib")}});
    }
    // The bytes of a library with the word size of another machine in its header.
    static std::string ofAnotherMachine(const char* library) {
        std::ifstream file(library, std::ios::binary);
        std::string bytes{std::istreambuf_iterator<char>(file), {}};
        bytes.at(4) = bytes.at(4) == 1 ? 2 : 1;
        return bytes;
    }
    // The library that has a function.
    template <class Function>
    static std::string fileOf(Function* function) {
        Dl_info info{};
        dladdr(reinterpret_cast<void*>(function), &info);
        return fs::canonical(info.dli_fname).string();
    }
    static std::string failure(SystemServices& services, std::u16string_view className) {
        try {
            services.services().objects.create(className);
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), 429);
            EXPECT_NE(error.description().find(className), std::u16string::npos);
            return error.what();
        }
        return "no failure";
    }
};

TEST_F(NativeClasses, AreCreatedByEveryFormOfRegistration) {
    const std::string clsid = "{01234567-89AB-CDEF-0123-456789ABCDEF}";
    const std::string library = "[HKLM\\SOFTWARE\\Classes\\Test.Echo]\n\"NativeLibrary\"=\"";
    const std::string forms[] = {
        library + "libtest.so\"",
        library + "lib/libtest.so\"",
        library + (folder_ / "lib/libtest.so").string() + "\"",
        "[HKCR\\Test.Echo\\CLSID]\n@=\"" + clsid + "\"\n[HKLM\\SOFTWARE\\Classes\\WOW6432Node\\CLSID\\" + clsid +
            "\\InprocServer32]\n@=\"C:\\\\Program Files\\\\Test\\\\TEST.DLL\"",
    };
    for (const std::string& form : forms) {
        const auto services = machine(form);
        const auto object = services->services().objects.create(u"test.ECHO");
        automation::Variant argument(u"back");
        EXPECT_TRUE(object->invoke(u"Echo", automation::InvokeKind::method, {&argument, 1}).identical(argument))
            << form;
        try {
            object->invoke(u"None", automation::InvokeKind::method, {});
            ADD_FAILURE();
        } catch (const Error& error) {  // thrown in the library, caught here
            EXPECT_EQ(error.number(), 438);
        }
    }
}

TEST_F(NativeClasses, AreLookedUpAnewForEachObject) {
    machine("");  // copies the libraries to their places
    fs::copy_file(folder_ / "lib/broken.so", folder_ / "lib/late.so");
    MemoryRegistry registry;
    const auto objects = machineObjects(registry, {path(u"lib")});
    const auto create = [&](std::u16string_view library) {
        registry.set(u"SOFTWARE\\Classes\\Test.Echo", u"NativeLibrary", library);
        try {
            return objects->create(u"Test.Echo") != nullptr;
        } catch (const Error&) {
            return false;
        }
    };
    EXPECT_TRUE(create(u"libtest.so"));
    EXPECT_FALSE(create(u"gone.so"));
    EXPECT_FALSE(create(u"late.so"));
    fs::copy_file(VELMOR_TEST_NATIVE_LIBRARY, folder_ / "lib/late.so", fs::copy_options::overwrite_existing);
    EXPECT_TRUE(create(u"late.so"));
}

TEST_F(NativeClasses, ReportWhyTheyCannotBeCreated) {
    std::string registry;
    for (const char* name : {"Abi", "Throws", "Null", "Fails", "Unknown"}) {
        registry += std::string("[HKLM\\SOFTWARE\\Classes\\Test.") + name + "]\n\"NativeLibrary\"=\"libtest.so\"\n";
    }
    put("lib/machine.so", ofAnotherMachine(VELMOR_TEST_HANDLER));
    const std::pair<const char*, std::string> libraries[] = {{"Gone", "gone.so"},
                                                             {"Broken", "broken.so"},
                                                             {"Machine", "machine.so"},
                                                             {"Version", VELMOR_TEST_OTHER_VERSION},
                                                             {"Foreign", VELMOR_TEST_HANDLER},
                                                             {"Empty", fileOf(&::sysconf)}};
    for (const auto& [name, file] : libraries) {
        registry += std::string("[HKLM\\SOFTWARE\\Classes\\Test.") + name + "]\n\"NativeLibrary\"=\"" + file + "\"\n";
    }
    const auto services = machine(registry);
    // clang-format off
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"Test.Abi", "built for another version"}, {u"Test.Throws", "thrown inside"}, {u"Test.Null", "made no object"},
        {u"Test.Fails", "could not make"}, {u"Test.Unknown", "does not know"}, {u"Test.Broken", "broken.so"},
        {u"Test.Machine", "ELF"}, {u"Test.Version", "built for another version"}, {u"Test.Foreign", "does not know"},
        {u"Test.Empty", "has no handlers"}, {u"Test.Gone", "no library for \"gone.so\""}, {u"Test.None", "not registered"}, {u"", "no class name"},
        {u"{01234567-89AB-CDEF-0123-456789ABCDEF}", "no class name"}, {u"new:Test.Echo", "no class name"}};
    // clang-format on
    for (const auto& [name, reason] : cases) {
        EXPECT_NE(failure(*services, name).find(reason), std::string::npos) << reason;
    }
}

TEST_F(NativeClasses, NeedAReadableRegistryFile) {
    EXPECT_THROW(SystemServices({path(u"none.reg"), {}}), Error);
    EXPECT_EQ(machine("nonsense")->warnings().size(), 1U);
}

}  // namespace
}  // namespace velmor::platform

#endif
