#pragma once

#include <tessel/Message.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <memory>
#include <vector>

namespace tsl
{

/// Messages in the order in which they came, for a test to look at: what a MessageRecorder got from a bus, or what a
/// MachineDriver's machine has sent. One thread at a time uses a list.
class MessageList
{
public:
    /// Appends a copy, or the message itself.
    void Add(Message const & oMessage);
    void Add(std::unique_ptr<Message> pMessage);

    /// The number of messages.
    int GetCount() const { return static_cast<int>(m_vMessages.size()); }

    /// The message of that index, which is valid as long as the list. An index outside the list throws
    /// std::out_of_range.
    Message const & Get(int iIndex) const { return *m_vMessages.at(static_cast<std::size_t>(iIndex)); }

    /// The messages of class M or of one derived from it, which are valid as long as the list.
    template<class M>
    std::vector<M const *> GetAll() const
    {
        std::vector<M const *> vFound;
        for (std::unique_ptr<Message> const & pMessage : m_vMessages)
            if (auto const * const pFound = dynamic_cast<M const *>(pMessage.get()))
                vFound.push_back(pFound);
        return vFound;
    }

    /// The results of all result messages.
    std::vector<Result> GetResults() const;

    /// The text of each message, as Message::AddAsString has it, and a line feed. For a ResultMessage it is
    /// Result::GetTextWithCauses, or "success".
    String GetText() const;

private:
    std::vector<std::unique_ptr<Message>> m_vMessages;
};

} // namespace tsl
