#include "TestSupport.h"

TestSettings::TestSettings()
{
    reopen();
}

void TestSettings::reopen()
{
    m_settings.reset();
    m_store = std::make_unique<JsonSettingsStore>(fileName());
    m_settings = std::make_unique<AppSettings>(*m_store);
}

PrintedLines::PrintedLines()
{
    m_previous = setLineSink([this](const QString& line) { m_lines.append(line); });
}

PrintedLines::~PrintedLines()
{
    setLineSink(std::move(m_previous));
}
