#include "Progress.h"

#include "JobMessages.h"
#include "Terminal.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/Support.h>

#include <algorithm>
#include <cstdint>

namespace
{

// A line that wraps could not be drawn over.
constexpr char WRAP_OFF[] = "\033[?7l";
constexpr char WRAP_ON[] = "\033[?7h";
constexpr char CLEAR_TO_END[] = "\r\033[J";

bool IsAtWork(JobState eState)
{
    return eState == JobState::eStarting || eState == JobState::eRunning || eState == JobState::eStopping
           || eState == JobState::eRetrying;
}

/// Whether a change is worth a line.
bool IsNews(JobState eState, bool bTerminal)
{
    if (bTerminal)
        return eState == JobState::eFailed || eState == JobState::eRetrying;
    return eState != JobState::eWaiting && eState != JobState::eStarting;
}

std::string FormatSeconds(std::int64_t iTime)
{
    std::int64_t const iSeconds = iTime / 1000;
    if (iSeconds < 60)
        return std::to_string(iSeconds) + " s";
    std::string const sMinutes = std::to_string(iSeconds / 60 % 60) + " min";
    return iSeconds < 3600 ? sMinutes + ' ' + std::to_string(iSeconds % 60) + " s"
                           : std::to_string(iSeconds / 3600) + " h " + sMinutes;
}

} // namespace

Progress::Progress(JobPlan const & oPlan, TimeLeft const & oTimeLeft, Style const & oStyle, Output & oOutput)
    : m_oPlan(oPlan),
      m_oTimeLeft(oTimeLeft),
      m_oStyle(oStyle),
      m_oOutput(oOutput),
      m_vViews(oPlan.vJobs.size())
{
    constexpr std::size_t iNameWidthMax = 30;
    for (std::size_t i = 0; i < oPlan.vJobs.size(); ++i)
    {
        std::string const & sName = oPlan.vJobs[i].sName.s_str();
        m_oIndexes.emplace(sName, i);
        m_iNameWidth = std::min(std::max(m_iNameWidth, sName.size()), iNameWidthMax);
    }
}

Progress::~Progress()
{
    tsl::Support::GetAppDisp().Unregister(*this);
}

void Progress::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    std::lock_guard const oScope(m_oLock);
    if (auto const * const pState = dynamic_cast<JobStateMessage const *>(&oMessage))
        Note(m_oIndexes.at(pState->GetJob().s_str()), *pState);
    else if (auto const * const pLine = dynamic_cast<JobLineMessage const *>(&oMessage))
        m_vViews[m_oIndexes.at(pLine->GetJob().s_str())].oTail.Add(pLine->GetBytes(), pLine->IsLast());
}

void Progress::Note(std::size_t iJob, JobStateMessage const & oMessage) const
{
    View & oView = m_vViews[iJob];
    JobState const eState = oMessage.GetState();
    if (oView.eState == JobState::eWaiting)
        oView.oStart = Clock::now();
    oView.eState = eState;
    m_iEnded += IsEnd(eState) ? 1U : 0U;
    m_iFailed += eState == JobState::eFailed ? 1U : 0U;
    if (eState == JobState::eDone)
        oView.oTail = OutputTail();

    if (IsNews(eState, m_oStyle.bTerminal))
    {
        m_sNews += oMessage.GetJob().s_str() + ": " + m_oStyle.Paint(eState, GetName(eState));
        if (!oMessage.GetReason().IsEmpty())
            m_sNews += " (" + oMessage.GetReason().s_str() + ')';
        m_sNews += '\n';
    }
}

void Progress::DrawAtTimes()
{
    constexpr std::chrono::milliseconds iInterval(100);
    std::lock_guard const oScope(m_oLock);
    if (m_oStyle.bTerminal && Clock::now() < m_oLastDrawing + iInterval)
        return;
    m_oLastDrawing = Clock::now();
    Clear();
    m_oOutput.Write(m_sNews);
    m_sNews.clear();
    if (m_oStyle.bTerminal)
        Draw();
    m_oOutput.Flush();
}

void Progress::End()
{
    std::lock_guard const oScope(m_oLock);
    Clear();
    m_oOutput.Write(m_sNews);
    m_sNews.clear();
    m_oOutput.Flush();
}

bool Progress::IsUnread() const
{
    std::lock_guard const oScope(m_oLock);
    return m_oOutput.IsUnread();
}

std::string Progress::GetLastLines(std::size_t iJob) const
{
    std::lock_guard const oScope(m_oLock);
    return m_vViews[iJob].oTail.GetText();
}

void Progress::Clear()
{
    if (m_iDrawn > 1)
        m_oOutput.Write("\033[" + std::to_string(m_iDrawn - 1) + 'A');
    if (m_iDrawn > 0)
        m_oOutput.Write(CLEAR_TO_END);
    m_iDrawn = 0;
}

void Progress::Draw()
{
    // One line for the total, and one in which the cursor stands when all has ended.
    std::size_t const iLinesMax = std::max<std::size_t>(Terminal::GetHeight(), 4) - 2;
    std::size_t const iWidth = std::max<std::size_t>(Terminal::GetWidth(), 20) - 1;
    m_oOutput.Write(WRAP_OFF);
    for (std::size_t i = 0; i < m_vViews.size() && m_iDrawn < iLinesMax; ++i)
        if (IsAtWork(m_vViews[i].eState))
        {
            m_oOutput.Write(MakeJobLine(i, iWidth) + '\n');
            ++m_iDrawn;
        }
    m_oOutput.Write(MakeShort(MakeTotal(), iWidth) + WRAP_ON);
    ++m_iDrawn;
}

std::string Progress::MakeJobLine(std::size_t iJob, std::size_t iWidth) const
{
    View const & oView = m_vViews[iJob];
    std::string sName = MakeShort(m_oPlan.vJobs[iJob].sName.s_str(), m_iNameWidth);
    sName.resize(m_iNameWidth, ' ');
    auto const iTime = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - oView.oStart);
    std::string const sTime = FormatSeconds(iTime.count());
    std::string const sBegin =
        sName + "  " + std::string(8 - std::min<std::size_t>(sTime.size(), 8), ' ') + sTime;
    std::string const sEnd =
        oView.eState == JobState::eRunning ? oView.oTail.GetLastLine() : std::string(GetName(oView.eState));
    return m_oStyle.Paint(oView.eState, MakeShort(sBegin + "  " + sEnd, iWidth));
}

std::string Progress::MakeTotal() const
{
    std::string sTotal = '[' + std::to_string(m_iEnded) + '/' + std::to_string(m_vViews.size()) + ']';
    if (m_iFailed > 0)
        sTotal += " failed: " + std::to_string(m_iFailed);
    return sTotal + MakeTimeLeft();
}

std::string Progress::MakeTimeLeft() const
{
    if (!m_oTimeLeft.IsKnown())
        return {};
    std::vector<std::int64_t> vElapsed;
    for (View const & oView : m_vViews)
    {
        auto const iTime = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - oView.oStart);
        vElapsed.push_back(IsEnd(oView.eState)                  ? TimeLeft::ENDED
                           : oView.eState == JobState::eWaiting ? 0
                                                                : iTime.count());
    }
    return "  about " + FormatSeconds(m_oTimeLeft.Get(vElapsed) + 999) + " left";
}
