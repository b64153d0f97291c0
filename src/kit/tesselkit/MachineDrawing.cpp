#include <tesselkit/MachineDrawing.h>

#include "MachineTree.h"

#include <tessel/Task.h>

#include <map>

namespace tsl
{

namespace
{

using Row = MachineTree::Row;
using Place = MachineTree::Place;

/// A box or a frame, where arrows begin and end.
struct Shape
{
    String sId;
    String sFirst; // of a frame: a box inside of it, for arrows to the frame
    String sLast;  // the same for arrows from it
    bool bFrame = false;
};

/// Writes the parts of a picture in one language.
class Pen
{
public:
    virtual ~Pen() = default;

    virtual void Begin(String const & sName) = 0;
    virtual void AddFirst(String const & sId) = 0;
    virtual void AddLast(String const & sId, bool bRunning) = 0;
    virtual void AddBox(String const & sId, String const & sName, bool bRunning) = 0;
    virtual void OpenFrame(String const & sId, String const & sName, bool bRunning) = 0;
    virtual void CloseFrame() = 0;
    virtual void AddArrow(Shape const & oFrom, Shape const & oTo, String const & sName) = 0;
    virtual void End() = 0;

    String const & GetText() const { return m_sText; }

protected:
    void Write(String const & sLine) { m_sText << String(' ', 4 * m_iDepth) << sLine << '\n'; }

    unsigned int m_iDepth = 0;

private:
    String m_sText;
};

/// The bytes of a text, each as the function says; a control character is a blank.
String Escape(String const & sText, String (*fEscape)(char))
{
    String sEscaped;
    for (char const c : sText.s_str())
        sEscaped << (static_cast<unsigned char>(c) < ' ' ? String(" ") : fEscape(c));
    return sEscaped;
}

class MermaidPen : public Pen
{
public:
    void Begin(String const &) override
    {
        Write("flowchart TD");
        ++m_iDepth;
    }

    void AddFirst(String const & sId) override { Write(sId + "(( ))"); }

    void AddLast(String const & sId, bool bRunning) override
    {
        Write(sId + "((( )))");
        NoteRunning(sId, bRunning);
    }

    void AddBox(String const & sId, String const & sName, bool bRunning) override
    {
        Write(sId + "(" + Quote(sName) + ")");
        NoteRunning(sId, bRunning);
    }

    void OpenFrame(String const & sId, String const & sName, bool bRunning) override
    {
        Write(String("subgraph ") + sId + " [" + Quote(sName) + "]");
        NoteRunning(sId, bRunning);
        ++m_iDepth;
    }

    void CloseFrame() override
    {
        --m_iDepth;
        Write("end");
    }

    void AddArrow(Shape const & oFrom, Shape const & oTo, String const & sName) override
    {
        Write(oFrom.sId + " -->" + (sName.IsEmpty() ? String() : String("|") + Quote(sName) + "|") + " "
              + oTo.sId);
    }

    void End() override
    {
        if (m_sRunning.IsEmpty())
            return;
        Write("classDef running stroke:#d60,stroke-width:4px");
        Write(String("class ") + m_sRunning + " running");
    }

private:
    void NoteRunning(String const & sId, bool bRunning)
    {
        if (bRunning)
            m_sRunning << (m_sRunning.IsEmpty() ? "" : ",") << sId;
    }

    static String Quote(String const & sText)
    {
        auto const fEscape = [](char c)
        {
            bool const bPlain = std::string_view("\"#&<>|`\\").find(c) == std::string_view::npos;
            return bPlain ? String(c, 1) : String("#") + int{c} + ";";
        };
        return String("\"") + Escape(sText, fEscape) + "\"";
    }

    String m_sRunning; // ids
};

class GraphvizPen : public Pen
{
public:
    void Begin(String const & sName) override
    {
        Write(String("digraph ") + Quote(sName));
        Write("{");
        ++m_iDepth;
        Write("compound=true;");
        Write("node [shape=box, style=rounded];");
    }

    void AddFirst(String const & sId) override { Write(sId + " [shape=point];"); }

    void AddLast(String const & sId, bool bRunning) override
    {
        Write(sId + " [shape=doublecircle, label=\"\", width=0.15" + GetStyle(bRunning) + "];");
    }

    void AddBox(String const & sId, String const & sName, bool bRunning) override
    {
        Write(sId + " [label=" + Quote(sName) + GetStyle(bRunning) + "];");
    }

    void OpenFrame(String const & sId, String const & sName, bool bRunning) override
    {
        Write(String("subgraph cluster_") + sId);
        Write("{");
        ++m_iDepth;
        Write(String("graph [label=") + Quote(sName) + GetStyle(bRunning) + "];");
    }

    void CloseFrame() override
    {
        --m_iDepth;
        Write("}");
    }

    /// An arrow joins boxes, and is cut at the frame around the box.
    void AddArrow(Shape const & oFrom, Shape const & oTo, String const & sName) override
    {
        String sOptions;
        if (!sName.IsEmpty())
            sOptions << "label=" << Quote(sName);
        if (oFrom.bFrame)
            sOptions << (sOptions.IsEmpty() ? "" : ", ") << "ltail=cluster_" << oFrom.sId;
        if (oTo.bFrame)
            sOptions << (sOptions.IsEmpty() ? "" : ", ") << "lhead=cluster_" << oTo.sId;
        Write((oFrom.bFrame ? oFrom.sLast : oFrom.sId) + " -> " + (oTo.bFrame ? oTo.sFirst : oTo.sId)
              + (sOptions.IsEmpty() ? String() : String(" [") + sOptions + "]") + ";");
    }

    void End() override { CloseFrame(); }

private:
    /// A frame without these would have those of the frame around it.
    static String GetStyle(bool bRunning)
    {
        return bRunning ? ", color=\"#dd6600\", penwidth=4" : ", color=black, penwidth=1";
    }

    static String Quote(String const & sText)
    {
        auto const fEscape = [](char c)
        { return c == '"' || c == '\\' ? String('\\', 1) + String(c, 1) : String(c, 1); };
        return String("\"") + Escape(sText, fEscape) + "\"";
    }
};

/// Draws a machine and those inside.
class Draughtsman
{
public:
    Draughtsman(Pen & oPen, MachineNames const & oNames) : m_oPen(oPen), m_oNames(oNames) {}

    void DrawAll(MachineTree const & oTree)
    {
        m_oPen.Begin(oTree.sName);
        Draw(oTree);
        m_oPen.End();
    }

private:
    /// Draws the content of a frame; oFrame gets the boxes inside of it.
    void Draw(MachineTree const & oTree, Shape & oFrame)
    {
        std::map<int, Shape> oShapes;
        oFrame.sFirst = oShapes[Task::TASK_INIT].sId = MakeId();
        m_oPen.AddFirst(oFrame.sFirst);
        for (Place const & oPlace : oTree.vPlaces)
            oShapes[oPlace.iTaskId] = Draw(oPlace);
        oFrame.sLast = oFrame.sFirst;
        if (oTree.HasEnd())
        {
            oFrame.sLast = oShapes[Task::TASK_FINE].sId = MakeId();
            m_oPen.AddLast(oFrame.sLast, oTree.bEnded);
        }

        for (Row const & oRow : oTree.vRows)
        {
            String const sNumber = oRow.iResult == Task::TR_PROCEED ? String() : String() + oRow.iResult;
            m_oPen.AddArrow(oShapes[oRow.iSource], oShapes[oRow.iDestination],
                m_oNames.GetResult(oRow.iSource, oRow.iResult, sNumber));
        }
    }

    void Draw(MachineTree const & oTree)
    {
        Shape oWhole;
        Draw(oTree, oWhole);
    }

    Shape Draw(Place const & oPlace)
    {
        Shape oShape;
        oShape.sId = MakeId();
        oShape.bFrame = oPlace.pMachine != nullptr;
        if (!oShape.bFrame)
        {
            m_oPen.AddBox(oShape.sId, oPlace.sName, oPlace.bRunning);
            return oShape;
        }
        m_oPen.OpenFrame(oShape.sId, oPlace.sName, oPlace.bRunning);
        Draw(*oPlace.pMachine, oShape);
        m_oPen.CloseFrame();
        return oShape;
    }

    String MakeId() { return String("n") + m_iShapes++; }

    Pen & m_oPen;
    MachineNames const & m_oNames;
    int m_iShapes = 0;
};

} // namespace

MachineDrawing::MachineDrawing(TaskProcessor & oMachine, MachineNames const & oNames)
    : m_pTree(std::make_unique<MachineTree const>(oMachine, oNames)), m_oNames(oNames)
{
}

MachineDrawing::~MachineDrawing() = default;

String MachineDrawing::GetMermaid() const
{
    MermaidPen oPen;
    Draughtsman(oPen, m_oNames).DrawAll(*m_pTree);
    return oPen.GetText();
}

String MachineDrawing::GetGraphviz() const
{
    GraphvizPen oPen;
    Draughtsman(oPen, m_oNames).DrawAll(*m_pTree);
    return oPen.GetText();
}

} // namespace tsl
