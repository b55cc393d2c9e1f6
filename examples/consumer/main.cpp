// What a program of the family does first: find its settings, read one, ask for the language, log.
#include <exception>
#include <iostream>
#include <string>

#include <IniConfig.h>
#include <IniReader.h>
#include <LanguageHelper.h>
#include <Logger.h>
#include <VersionConfig.h>

using namespace Quenlor::Fraxo::SharedUtilities::Native;

int main()
{
    Logger::Initialize(); // steered by FraxoPro.log.xml, beside the program or in the machine's data
    try
    {
        const auto settings = IniConfig::GetFraxoProIniPath(); // copied from the installed default on first use
        IniReader reader;
        reader.LoadFile(settings.ToStdString());
        const int minutes = reader.GetIntegerValue("GENERAL", "AutoSaveMinutes", 5);

        std::cout << "settings   " << settings.c_str() << '\n'
                  << "auto save  every " << minutes << " minutes\n"
                  << "language   " << LanguageHelper::GetCurrentLanguage().c_str() << '\n'
                  << "version    " << VersionConfig::GetProductVersion().c_str() << std::endl;
        if (auto* const logger = Logger::Get())
            logger->Info("read " + settings.ToStdString());
        return 0;
    }
    catch (const std::exception& error) // no installation, or a setting that is no number
    {
        std::cerr << "consumer: " << error.what() << '\n';
        return 1;
    }
}
