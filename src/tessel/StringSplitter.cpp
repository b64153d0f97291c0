#include <tessel/Support.h>

#include <tessel/Assertion.h>

#include <string_view>
#include <utility>

namespace tsl
{

static constexpr char QUOTE = '"';

namespace
{

/// A part of a text between two double quotes, or outside of them.
struct Piece
{
    String sText;
    bool bQuoted;
};

/// The position of the first separator, from iPosition on, that has no escape character directly in front of it.
std::size_t FindSeparator(std::string_view sText, char cSeparator, char cEscape, std::size_t iPosition)
{
    std::size_t iFound = sText.find(cSeparator, iPosition);
    while (iFound != std::string_view::npos && iFound > 0 && sText[iFound - 1] == cEscape)
        iFound = sText.find(cSeparator, iFound + 1);
    return iFound;
}

/// Removes all escape characters in front of each separator: after one is removed, the one before it is in front of
/// the separator.
std::string RemoveEscapes(std::string_view sText, char cSeparator, char cEscape)
{
    std::string sPlain;
    for (char const c : sText)
    {
        while (c == cSeparator && sPlain.ends_with(cEscape))
            sPlain.pop_back();
        sPlain += c;
    }
    return sPlain;
}

String MakePart(std::string_view sText, char cSeparator, int iFlags, char cEscape)
{
    String sPart(sText);
    if (iFlags & Support::eSplitTrimLeft)
        sPart.TrimLeft();
    if (iFlags & Support::eSplitTrimRight)
        sPart.TrimRight();
    if (iFlags & Support::eSplitRemoveEscape)
        sPart = RemoveEscapes(sPart.s_str(), cSeparator, cEscape);
    return sPart;
}

/// Appends all parts of the text.
void SplitAll(String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape)
{
    std::string_view const sAll = sText.s_str();
    std::size_t iBegin = 0;
    while (!sAll.empty() && iBegin != std::string_view::npos)
    {
        std::size_t const iEnd = FindSeparator(sAll, cSeparator, cEscape, iBegin);
        String const sPart = MakePart(sAll.substr(iBegin, iEnd - iBegin), cSeparator, iFlags, cEscape);
        if (!sPart.IsEmpty() || !(iFlags & Support::eSplitSkipEmpty))
            vParts.push_back(sPart);
        iBegin = iEnd == std::string_view::npos ? iEnd : iEnd + 1;
    }
}

/// Every second piece is quoted, the first one not.
std::vector<Piece> MakePieces(std::vector<String> const & vParts)
{
    std::vector<Piece> vPieces;
    for (String const & sPart : vParts)
        vPieces.push_back({sPart, vPieces.size() % 2 == 1});
    return vPieces;
}

/// Whether the last character is a quote without an escape. A text of two quotes counts only as beginning with one.
bool EndsWithQuote(String const & sText, char cEscape)
{
    unsigned int const iLength = sText.GetLength();
    return iLength >= 3 && sText[iLength - 1] == QUOTE && sText[iLength - 2] != cEscape;
}

/// Removes the empty pieces before a quote at the beginning and after a quote at the end.
void RemoveOuterPieces(std::vector<Piece> & oStringParts, bool bBegin, bool bEnd)
{
    if (bBegin)
    {
        if (oStringParts.size() <= 1 || !oStringParts[0].sText.IsEmpty() || oStringParts[0].bQuoted)
            XAssertionFailed("oStringParts.size() > 1 && oStringParts[0].first.GetLength() == 0 && "
                             "oStringParts[0].second == false",
                ERR::GetErrorText(ERR::eInternal));
        oStringParts.erase(oStringParts.begin());
    }
    if (bEnd)
        oStringParts.pop_back();
}

/// Removes one separator between a piece and each quoted neighbour, which would make an empty part.
void CutInnerSeparators(std::vector<Piece> & vPieces, char cSeparator)
{
    for (Piece & oPiece : vPieces)
    {
        if (oPiece.bQuoted)
            continue;
        if (&oPiece != &vPieces.back() && oPiece.sText.s_str().ends_with(cSeparator))
            oPiece.sText.CutRight(1);
        if (&oPiece != &vPieces.front() && oPiece.sText.s_str().starts_with(cSeparator))
            oPiece.sText.CutLeft(1);
    }
}

/// Quoted pieces become parts without changes.
void SplitAroundQuotes(
    String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape)
{
    std::vector<String> vTexts;
    SplitAll(sText, vTexts, QUOTE, Support::eSplitRemoveEscape, cEscape);
    std::vector<Piece> vPieces = MakePieces(vTexts);
    RemoveOuterPieces(vPieces, sText.s_str().starts_with(QUOTE), EndsWithQuote(sText, cEscape));
    CutInnerSeparators(vPieces, cSeparator);

    for (Piece const & oPiece : vPieces)
    {
        if (oPiece.bQuoted)
            vParts.push_back(oPiece.sText);
        else
            SplitAll(oPiece.sText, vParts, cSeparator, iFlags, cEscape);
    }
}

} // namespace

unsigned int Support::StringSplitter(
    String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape)
{
    // Not directly into vParts: sText may be one of its elements.
    std::vector<String> vNewParts;
    if (iFlags & eSplitQuotes)
        SplitAroundQuotes(sText, vNewParts, cSeparator, iFlags, cEscape);
    else
        SplitAll(sText, vNewParts, cSeparator, iFlags, cEscape);
    vParts = std::move(vNewParts);
    return static_cast<unsigned int>(vParts.size());
}

int Support::Split(
    String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape)
{
    if (sText.IsEmpty())
        return 0;

    SplitAll(String(sText), vParts, cSeparator, iFlags, cEscape);
    return static_cast<int>(vParts.size());
}

} // namespace tsl
