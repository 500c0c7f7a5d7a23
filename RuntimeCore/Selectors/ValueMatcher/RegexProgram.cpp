#include "RuntimeCore/Selectors/ValueMatcher/RegexProgram.h"

#include <algorithm>

#include "RuntimeCore/Selectors/ValueMatcher/LowerCase.h"

namespace Zorvex {

namespace {

constexpr std::size_t kMaximumInstructions = 100000;
// Repetitions of what has no instructions, as (){1000}, cost time too.
constexpr std::size_t kMaximumVisits = 1000000;

class Compiler {
public:
    Compiler(const RegexSyntax& syntax, RegexProgram& program) : m_syntax(syntax), m_program(program) {}

    void Compile() {
        EmitNode(m_syntax.root);
        Emit(Kind::Accept);
    }

private:
    using Kind = RegexInstruction::Kind;
    using NodeKind = RegexNode::Kind;

    std::uint32_t Here() const { return static_cast<std::uint32_t>(m_program.code.size()); }
    std::uint32_t Emit(Kind kind, std::uint32_t a = 0, std::uint32_t b = 0) {
        if (m_program.code.size() >= kMaximumInstructions)
            throw RegexError{RegexErrorCode::Complexity, "expression is too complex"};
        m_program.code.push_back({kind, a, b});
        return Here() - 1;
    }
    // The branch that leaves a loop or skips an option.
    void SetExit(std::uint32_t split, bool greedy) {
        RegexInstruction& instruction = m_program.code[split];
        instruction.a = greedy ? split + 1 : Here();
        instruction.b = greedy ? Here() : split + 1;
    }

    // Depth is bounded by that of the groups in the pattern.
    void EmitNode(std::uint32_t index) {
        if (++m_visits > kMaximumVisits) throw RegexError{RegexErrorCode::Complexity, "expression is too complex"};
        const RegexNode& node = m_syntax.nodes[index];
        switch (node.kind) {
            case NodeKind::Unit: Emit(Kind::Unit, node.value); return;
            case NodeKind::AnyUnit: Emit(Kind::AnyUnit); return;
            case NodeKind::Set: Emit(Kind::Set, node.value); return;
            case NodeKind::Begin: Emit(Kind::Begin); return;
            case NodeKind::End: Emit(Kind::End); return;
            case NodeKind::WordBoundary: Emit(Kind::WordBoundary); return;
            case NodeKind::NoWordBoundary: Emit(Kind::NoWordBoundary); return;
            case NodeKind::BackReference: Emit(Kind::BackReference, node.value); return;
            case NodeKind::Sequence:
                for (const std::uint32_t child : node.children) EmitNode(child);
                return;
            case NodeKind::Alternatives: EmitAlternatives(node); return;
            case NodeKind::Repetition: EmitRepetition(node); return;
            case NodeKind::Group: EmitGroup(node); return;
            case NodeKind::LookAhead:
            case NodeKind::NegativeLookAhead: EmitLook(node); return;
        }
    }

    void EmitAlternatives(const RegexNode& node) {
        std::vector<std::uint32_t> jumps;
        for (std::size_t i = 0; i + 1 < node.children.size(); ++i) {
            const std::uint32_t split = Emit(Kind::Split);
            EmitNode(node.children[i]);
            jumps.push_back(Emit(Kind::Jump));
            SetExit(split, true);
        }
        EmitNode(node.children.back());
        for (const std::uint32_t jump : jumps) m_program.code[jump].a = Here();
    }

    void EmitGroup(const RegexNode& node) {
        const bool saves = m_syntax.hasBackReferences && node.value != 0;
        if (saves) Emit(Kind::Save, 2 * (node.value - 1));
        EmitNode(node.children[0]);
        if (saves) Emit(Kind::Save, 2 * (node.value - 1) + 1);
    }

    void EmitLook(const RegexNode& node) {
        const std::uint32_t look = Emit(Kind::Look);
        const std::uint32_t begin = Here();
        EmitNode(node.children[0]);
        Emit(Kind::Accept);
        m_program.code[look].a = static_cast<std::uint32_t>(m_program.looks.size());
        m_program.code[look].b = Here();
        m_program.looks.push_back({begin, Here(), node.kind == NodeKind::NegativeLookAhead});
    }

    // What a group inside held in the round before is forgotten at the start of each.
    void EmitRound(std::uint32_t child) {
        if (m_syntax.hasBackReferences) {
            std::uint32_t first = UINT32_MAX;
            std::uint32_t last = 0;
            FindGroups(child, first, last);
            if (first <= last) Emit(Kind::ClearSaves, 2 * (first - 1), 2 * last);
        }
        EmitNode(child);
    }

    void FindGroups(std::uint32_t index, std::uint32_t& first, std::uint32_t& last) {
        if (++m_visits > kMaximumVisits) throw RegexError{RegexErrorCode::Complexity, "expression is too complex"};
        const RegexNode& node = m_syntax.nodes[index];
        if (node.kind == NodeKind::Group && node.value != 0) {
            first = std::min(first, node.value);
            last = std::max(last, node.value);
        }
        for (const std::uint32_t child : node.children) FindGroups(child, first, last);
    }

    void EmitRepetition(const RegexNode& node) {
        const std::uint32_t child = node.children[0];
        for (std::uint32_t i = 0; i < node.minimum; ++i) EmitRound(child);
        if (node.maximum == kNoMaximum) {
            const std::uint32_t split = Emit(Kind::Split);
            const std::uint32_t loop = m_program.loops;
            if (m_syntax.hasBackReferences) {
                ++m_program.loops;
                Emit(Kind::LoopBegin, loop);
            }
            EmitRound(child);
            if (m_syntax.hasBackReferences) Emit(Kind::LoopCheck, loop);
            Emit(Kind::Jump, split);
            SetExit(split, node.greedy);
            return;
        }
        std::vector<std::uint32_t> splits;
        for (std::uint32_t i = node.minimum; i < node.maximum; ++i) {
            splits.push_back(Emit(Kind::Split));
            EmitRound(child);
        }
        for (const std::uint32_t split : splits) SetExit(split, node.greedy);
    }

    const RegexSyntax& m_syntax;
    RegexProgram& m_program;
    std::size_t m_visits = 0;
};

}  // namespace

RegexProgram CompileRegex(RegexSyntax syntax, bool caseSensitive) {
    RegexProgram program;
    program.groups = syntax.groups;
    program.hasBackReferences = syntax.hasBackReferences;
    program.caseSensitive = caseSensitive;
    Compiler(syntax, program).Compile();
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

Regex Regex::Compile(std::wstring_view pattern, bool caseSensitive) {
    Regex regex;
    regex.m_program = std::make_unique<const RegexProgram>(CompileRegex(ParseRegex(pattern, caseSensitive), caseSensitive));
    return regex;
}

bool Regex::MatchesWhole(std::wstring_view text) const {
    if (!m_program) return false;
    return m_program->hasBackReferences ? RunByBacktracking(*m_program, text) : RunAllWays(*m_program, text);
}

}  // namespace Zorvex
