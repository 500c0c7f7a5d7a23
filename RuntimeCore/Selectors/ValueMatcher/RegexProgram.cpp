#include "RuntimeCore/Selectors/ValueMatcher/RegexProgram.h"

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

constexpr std::size_t kMaximumInstructions = 100000;
// Repetitions of what has no instructions, as (){1000}, cost time too.
constexpr std::size_t kMaximumVisits = 1000000;
// A set holds a table and some lists, as much as this many instructions.
constexpr std::uint64_t kCostOfSet = 16;

class Compiler {
public:
    Compiler(const RegexSyntax& syntax, RegexProgram& program, RegexBudget* budget)
        : m_syntax(syntax), m_program(program), m_budget(budget) {}

    // What is open is kept in a list of its own: the pattern's nesting costs no stack here.
    void Compile() {
        if (m_budget) m_budget->Spend(m_syntax.nodes.size() + kCostOfSet * m_syntax.sets.size());
        Visit(m_syntax.root);
        while (!m_open.empty()) Continue();
        Emit(Kind::Accept);
    }

private:
    using Kind = RegexInstruction::Kind;
    using NodeKind = RegexNode::Kind;

    std::uint32_t Here() const { return static_cast<std::uint32_t>(m_program.code.size()); }
    std::uint32_t Emit(Kind kind, std::uint32_t a = 0, std::uint32_t b = 0) {
        if (m_program.code.size() >= kMaximumInstructions)
            throw RegexError{RegexErrorCode::Complexity, "expression is too complex"};
        if (m_budget) m_budget->Spend(1);
        m_program.code.push_back({kind, a, b});
        return Here() - 1;
    }
    // The branch that leaves a loop or skips an option.
    void SetExit(std::uint32_t split, bool greedy) {
        RegexInstruction& instruction = m_program.code[split];
        instruction.a = greedy ? split + 1 : Here();
        instruction.b = greedy ? Here() : split + 1;
    }

    struct OpenNode {
        std::uint32_t node;
        std::uint32_t step = 0;         // children or rounds that were begun
        std::uint32_t instruction = 0;  // the Split or Look that waits for its end
        std::uint32_t waiting = 0;      // instructions that wait for the end of the node, as a list: see AddWaiting
        std::uint32_t loop = 0;
        bool isInLoop = false;
    };

    void Visit(std::uint32_t node) {
        if (++m_visits > kMaximumVisits) throw RegexError{RegexErrorCode::Complexity, "expression is too complex"};
        if (m_budget) m_budget->Spend(1);
        m_open.push_back({.node = node});
    }
    void Close() { m_open.pop_back(); }
    void EmitLeaf(Kind kind, std::uint32_t a = 0) {
        Emit(kind, a);
        Close();
    }

    // Until they know their target, waiting instructions hold in `b` the one that waited before, plus 1.
    void AddWaiting(std::uint32_t& list, std::uint32_t instruction) {
        m_program.code[instruction].b = list;
        list = instruction + 1;
    }
    template <class Action>
    void ForEachWaiting(std::uint32_t list, Action action) {
        while (list != 0) {
            const std::uint32_t instruction = list - 1;
            list = m_program.code[instruction].b;
            action(instruction);
        }
    }

    // One step of the innermost open node. Visit invalidates `open`, so it always comes last.
    void Continue() {
        OpenNode& open = m_open.back();
        const RegexNode& node = m_syntax.nodes[open.node];
        switch (node.kind) {
            case NodeKind::Unit: EmitLeaf(Kind::Unit, node.value); return;
            case NodeKind::AnyUnit: EmitLeaf(Kind::AnyUnit); return;
            case NodeKind::Set: EmitLeaf(Kind::Set, node.value); return;
            case NodeKind::Begin: EmitLeaf(Kind::Begin); return;
            case NodeKind::End: EmitLeaf(Kind::End); return;
            case NodeKind::WordBoundary: EmitLeaf(Kind::WordBoundary); return;
            case NodeKind::NoWordBoundary: EmitLeaf(Kind::NoWordBoundary); return;
            case NodeKind::BackReference: EmitLeaf(Kind::BackReference, node.value); return;
            case NodeKind::Sequence:
                if (open.step == node.children.size()) Close();
                else Visit(node.children[open.step++]);
                return;
            case NodeKind::Alternatives: ContinueAlternatives(open, node); return;
            case NodeKind::Repetition: ContinueRepetition(open, node); return;
            case NodeKind::Group: ContinueGroup(open, node); return;
            case NodeKind::LookAhead:
            case NodeKind::NegativeLookAhead: ContinueLook(open, node); return;
        }
    }

    void ContinueAlternatives(OpenNode& open, const RegexNode& node) {
        if (open.step == node.children.size()) {
            ForEachWaiting(open.waiting, [this](std::uint32_t jump) { m_program.code[jump].a = Here(); });
            Close();
            return;
        }
        if (open.step > 0) {
            AddWaiting(open.waiting, Emit(Kind::Jump));
            SetExit(open.instruction, true);
        }
        if (open.step + 1 < node.children.size()) open.instruction = Emit(Kind::Split);
        Visit(node.children[open.step++]);
    }

    void ContinueGroup(OpenNode& open, const RegexNode& node) {
        const bool saves = m_program.keepsGroups && node.value != 0;
        if (saves) Emit(Kind::Save, 2 * (node.value - 1) + open.step);
        if (open.step++ == 0) Visit(node.children[0]);
        else Close();
    }

    void ContinueLook(OpenNode& open, const RegexNode& node) {
        if (open.step++ == 0) {
            open.instruction = Emit(Kind::Look);
            Visit(node.children[0]);
            return;
        }
        Emit(Kind::Accept);
        m_program.code[open.instruction].a = static_cast<std::uint32_t>(m_program.looks.size());
        m_program.code[open.instruction].b = Here();
        m_program.looks.push_back({open.instruction + 1, Here(), node.kind == NodeKind::NegativeLookAhead});
        Close();
    }

    void ContinueRepetition(OpenNode& open, const RegexNode& node) {
        if (open.isInLoop) {
            if (m_program.keepsGroups) Emit(Kind::LoopCheck, open.loop);
            Emit(Kind::Jump, open.instruction);
            SetExit(open.instruction, node.greedy);
            Close();
            return;
        }
        if (open.step == node.maximum) {
            ForEachWaiting(open.waiting, [this, &node](std::uint32_t split) { SetExit(split, node.greedy); });
            Close();
            return;
        }
        if (open.step >= node.minimum && node.maximum == kNoMaximum) {
            open.isInLoop = true;
            open.instruction = Emit(Kind::Split);
            if (m_program.keepsGroups) {
                open.loop = m_program.loops++;
                Emit(Kind::LoopBegin, open.loop);
            }
        } else if (open.step >= node.minimum) {
            AddWaiting(open.waiting, Emit(Kind::Split));
        }
        // What a group inside held in the round before is forgotten at the start of each.
        if (m_program.keepsGroups && node.firstGroup < node.lastGroup)
            Emit(Kind::ClearSaves, 2 * node.firstGroup, 2 * node.lastGroup);
        ++open.step;
        Visit(node.children[0]);
    }

    const RegexSyntax& m_syntax;
    RegexProgram& m_program;
    RegexBudget* m_budget;
    std::vector<OpenNode> m_open;
    std::size_t m_visits = 0;
};

}  // namespace

RegexProgram CompileRegex(RegexSyntax syntax, bool caseSensitive, RegexGroups groups, RegexBudget* budget) {
    RegexProgram program;
    program.groups = syntax.groups;
    program.hasBackReferences = syntax.hasBackReferences;
    program.keepsGroups = syntax.hasBackReferences || groups == RegexGroups::Kept;
    program.caseSensitive = caseSensitive;
    Compiler(syntax, program, budget).Compile();
    program.code.shrink_to_fit();  // an expression may be kept for long
    program.sets = std::move(syntax.sets);
    return program;
}

wchar_t RegexProgram::Folded(wchar_t unit) const { return caseSensitive ? unit : ToLower(unit); }

bool RegexProgram::Takes(const RegexInstruction& instruction, wchar_t unit) const {
    switch (instruction.kind) {
        case RegexInstruction::Kind::Unit: return static_cast<std::uint32_t>(unit) == instruction.a;
        case RegexInstruction::Kind::AnyUnit: return unit != L'\n' && unit != L'\r' && unit != 0x2028 && unit != 0x2029;
        default: return sets[instruction.a].Contains(unit);
    }
}

bool RegexProgram::Holds(RegexInstruction::Kind kind, std::wstring_view text, std::size_t position) {
    if (kind == RegexInstruction::Kind::Begin) return position == 0;
    if (kind == RegexInstruction::Kind::End) return position == text.size();
    const bool before = position > 0 && IsInClass(text[position - 1], ClassWord);
    const bool behind = position < text.size() && IsInClass(text[position], ClassWord);
    return (before != behind) == (kind == RegexInstruction::Kind::WordBoundary);
}

Regex::Regex() noexcept = default;
Regex::~Regex() = default;
Regex::Regex(Regex&&) noexcept = default;
Regex& Regex::operator=(Regex&&) noexcept = default;

void RegexBudget::Spend(std::uint64_t cost) {
    if (cost > steps) throw RegexError{RegexErrorCode::Complexity, "expressions are too complex together"};
    steps -= cost;
}

Regex Regex::Compile(std::wstring_view pattern, bool caseSensitive, RegexBudget* budget) {
    Regex regex;
    regex.m_program = std::make_unique<const RegexProgram>(
        CompileRegex(ParseRegex(pattern, caseSensitive), caseSensitive, RegexGroups::Forgotten, budget));
    return regex;
}

bool Regex::MatchesWhole(std::wstring_view text) const {
    if (!m_program) return false;
    return m_program->hasBackReferences ? RunByBacktracking(*m_program, text) : RunAllWays(*m_program, text);
}

}  // namespace Zorvex
