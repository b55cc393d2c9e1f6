// What a program of the family does first: find its settings, read one, ask for the language, log.
#include <exception>
#include <filesystem>
#include <iostream>

#include <IniConfig.h>
#include <IniReader.h>
#include <LanguageHelper.h>
#include <Logger.h>
#include <RegistryHelper.h>
#include <VersionConfig.h>

using namespace Quenlor::Fraxo::SharedUtilities::Native;

int main()
{
    Logger::Initialize(); // steered by FraxoPro.log.xml, beside the program or in the machine's data
    try
    {
        const auto settings = IniConfig::GetFraxoProIniPath(); // copied from the installed default on first use
        IniReader reader;
        reader.LoadFile(settings);
        const int minutes = reader.GetIntegerValue("GENERAL", "AutoSaveMinutes", 5);
        const int starts = RegistryHelper::GetIntValue(HKEY_CURRENT_USER, R"(Software\Consumer)", "Starts", 0);

        std::cout << "settings   " << settings << ", " << file_size(ToNativePath(settings)) << " bytes\n"
                  << "auto save  every " << minutes << " minutes\n"
                  << "language   " << LanguageHelper::GetCurrentLanguage() << '\n'
                  << "version    " << VersionConfig::GetProductVersion() << '\n'
                  << "started    " << starts << " times before" << std::endl;
        RegistryHelper::SetIntValue(HKEY_CURRENT_USER, R"(Software\Consumer)", "Starts", starts + 1);
        if (auto* const logger = Logger::Get())
            logger->Info("read " + settings);
        return 0;
    }
    catch (const std::exception& error) // no installation, or a setting that is not a number
    {
        std::cerr << "consumer: " << error.what() << '\n';
        return 1;
    }
}
