#include "TarnwickMSL/Wire.h"

#include <cstring>
#include <type_traits>
#include <vector>

namespace tarnwick::msl {
namespace {

// The last case of each enumeration. An answer comes from a process that a program may have taken
// over, and no code handles other numbers.
constexpr Stage lastOf(Stage) {
    return Stage::mesh;
}
constexpr Language lastOf(Language) {
    return Language::wgsl;
}
constexpr PatchKind lastOf(PatchKind) {
    return PatchKind::quad;
}
constexpr Scalar lastOf(Scalar) {
    return Scalar::uint64;
}
constexpr ResourceKind lastOf(ResourceKind) {
    return ResourceKind::viewportSize;
}
constexpr TextureShape lastOf(TextureShape) {
    return TextureShape::cubeArray;
}
constexpr TextureComponent lastOf(TextureComponent) {
    return TextureComponent::ulong_;
}
constexpr MemberKind lastOf(MemberKind) {
    return MemberKind::sampler;
}
constexpr ArgumentTable lastOf(ArgumentTable) {
    return ArgumentTable::accelerationStructure;
}
constexpr Access lastOf(Access) {
    return Access::sample;
}
constexpr DiagnosticKind lastOf(DiagnosticKind) {
    return DiagnosticKind::note;
}

template <class Record> std::string bytesOf(const Record& record);

// One description of each record serves both ways: `Put` appends what it is given, `Take` fills it.
class Put {
  public:
    std::string bytes;

    template <class T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void operator()(const T& value) {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof(T));
    }
    void operator()(const std::string& text) { list(text.data(), text.size(), 1); }
    void operator()(const std::vector<std::uint32_t>& words) {
        list(words.data(), words.size(), sizeof(std::uint32_t));
    }
    template <class T> void operator()(const std::vector<T>& records) {
        (*this)(static_cast<std::uint32_t>(records.size()));
        for (const T& record : records)
            one(record);
    }

  private:
    void one(const std::string& text) { (*this)(text); }
    template <class T> void one(const T& record) { fields(record, *this); }
    void list(const void* data, std::size_t count, std::size_t size) {
        (*this)(static_cast<std::uint32_t>(count));
        bytes.append(static_cast<const char*>(data), count * size);
    }
};

class Take {
  public:
    explicit Take(std::string_view bytes) : bytes(bytes) {}
    bool isWhole() const { return isGood && bytes.empty(); }

    template <class T>
    requires std::is_arithmetic_v<T>
    void operator()(T& value) { copy(&value, sizeof(T)); }
    void operator()(bool& value) {
        std::uint8_t number = 0;
        (*this)(number);
        isGood = isGood && number <= 1;
        value = number == 1;
    }
    template <class T>
    requires std::is_enum_v<T>
    void operator()(T& value) {
        std::underlying_type_t<T> number{};
        (*this)(number);
        isGood = isGood && number <= static_cast<std::underlying_type_t<T>>(lastOf(T()));
        value = isGood ? static_cast<T>(number) : T();
    }
    void operator()(std::string& text) {
        text.resize(count(1));
        copy(text.data(), text.size());
    }
    void operator()(std::vector<std::uint32_t>& words) {
        words.resize(count(sizeof(std::uint32_t)));
        copy(words.data(), words.size() * sizeof(std::uint32_t));
    }
    template <class T> void operator()(std::vector<T>& records) {
        static const std::size_t least = leastOf(T());
        records.resize(count(least));
        for (T& record : records)
            one(record);
    }

  private:
    std::string_view bytes;
    bool isGood = true;

    void one(std::string& text) { (*this)(text); }
    template <class T> void one(T& record) { fields(record, *this); }
    // The bytes of an element with empty lists and texts, so that few bytes cannot ask for much
    // memory.
    static std::size_t leastOf(const std::string&) { return sizeof(std::uint32_t); }
    template <class T> static std::size_t leastOf(const T& record) {
        return bytesOf(record).size();
    }
    // A number of elements of at least `size` bytes each; 0 if the bytes that are left hold fewer.
    std::size_t count(std::size_t size) {
        std::uint32_t given = 0;
        (*this)(given);
        isGood = isGood && given <= bytes.size() / size;
        return isGood ? given : 0;
    }
    void copy(void* to, std::size_t size) {
        isGood = isGood && size <= bytes.size();
        if (!isGood || size == 0)
            return;
        std::memcpy(to, bytes.data(), size);
        bytes.remove_prefix(size);
    }
};

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, Resource>
void fields(Record& r, Bytes& bytes) {
    bytes(r.kind), bytes(r.index), bytes(r.binding), bytes(r.size), bytes(r.isWritten);
    bytes(r.shape), bytes(r.component), bytes(r.isDepth), bytes(r.level), bytes(r.isAtomic);
    bytes(r.countsLevels), bytes(r.samplerState), bytes(r.format);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, StageAttribute>
void fields(Record& a, Bytes& bytes) {
    bytes(a.name), bytes(a.index), bytes(a.scalar), bytes(a.width), bytes(a.isOfControlPoint);
    bytes(a.fetch);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, FunctionConstant>
void fields(Record& c, Bytes& bytes) {
    bytes(c.name), bytes(c.index), bytes(c.scalar), bytes(c.width), bytes(c.isRequired);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, ConstantNumber>
void fields(Record& n, Bytes& bytes) {
    bytes(n.isReal), bytes(n.integer), bytes(n.real);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, ConstantValue>
void fields(Record& c, Bytes& bytes) {
    bytes(c.name), bytes(c.numbers);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, ArgumentMember>
void fields(Record& m, Bytes& bytes) {
    bytes(m.kind), bytes(m.buffer), bytes(m.id), bytes(m.offset), bytes(m.bytes);
    bytes(m.index), bytes(m.stride);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, Override>
void fields(Record& o, Bytes& bytes) {
    bytes(o.id), bytes(o.name), bytes(o.scalar);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, EntryPoint>
void fields(Record& e, Bytes& bytes) {
    bytes(e.name), bytes(e.stage), bytes(e.words), bytes(e.resources), bytes(e.usesLoopBudget);
    bytes(e.needsStandardSamples);
    bytes(e.needsEightLanes);
    bytes(e.writesPointSize), bytes(e.colorAttachments), bytes(e.threadgroupBytes);
    bytes(e.threadgroupPointers), bytes(e.mostThreads), bytes(e.attributes), bytes(e.patch);
    bytes(e.controlPoints);
    bytes(e.constants), bytes(e.isShapedByConstants);
    bytes(e.storesByAddress), bytes(e.members), bytes(e.text), bytes(e.overrides);
    bytes(e.features);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, ReflectedType>
void fields(Record& t, Bytes& bytes) {
    bytes(t.name), bytes(t.bytes), bytes(t.alignment), bytes(t.record), bytes(t.columns);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, RecordMember>
void fields(Record& m, Bytes& bytes) {
    bytes(m.name), fields(m.type, bytes), bytes(m.offset), bytes(m.count), bytes(m.stride);
    bytes(m.isPointer);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, msl::Record>
void fields(Record& r, Bytes& bytes) {
    bytes(r.name), bytes(r.bytes), bytes(r.alignment), bytes(r.members);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, ReflectedArgument>
void fields(Record& a, Bytes& bytes) {
    bytes(a.name), bytes(a.table), bytes(a.index), bytes(a.count), fields(a.type, bytes);
    bytes(a.access), bytes(a.isConstant), bytes(a.isReference);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, ReflectedEntry>
void fields(Record& e, Bytes& bytes) {
    bytes(e.name), bytes(e.arguments);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, Diagnostic>
void fields(Record& d, Bytes& bytes) {
    bytes(d.kind), bytes(d.file), bytes(d.line), bytes(d.column), bytes(d.length), bytes(d.text);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, Compilation>
void fields(Record& c, Bytes& bytes) { // isCompilersFault is set on the parent's side
    bytes(c.failed), bytes(c.messages), bytes(c.diagnostics), bytes(c.entryPoints);
    bytes(c.files), bytes(c.reflection.entries), bytes(c.reflection.records), bytes(c.listings);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, IncludeFolder>
void fields(Record& f, Bytes& bytes) {
    bytes(f.name), bytes(f.path);
}

template <class Record, class Bytes>
requires std::is_same_v<std::remove_const_t<Record>, Request>
void fields(Record& r, Bytes& bytes) {
    bytes(r.limitMilliseconds), bytes(r.target.language), bytes(r.target.addsFloatsInBuffers);
    bytes(r.target.followsAddresses), bytes(r.target.hasMeshFunctions);
    bytes(r.target.ordersFragments), bytes(r.target.keepsLogs), bytes(r.moreWarningsIn);
    bytes(r.target.specialisesUniforms), bytes(r.target.hasFloat16), bytes(r.target.hasInt8);
    bytes(r.target.hasInt16), bytes(r.target.hasInt64), bytes(r.target.isOptimised);
    bytes(r.includes), bytes(r.reflects), bytes(r.lists);
    bytes(r.source), bytes(r.constants.values), bytes(r.constants.othersAreUndefined);
}

template <class Record> std::string bytesOf(const Record& record) {
    Put put;
    fields(record, put);
    return std::move(put.bytes);
}

template <class Record> std::optional<Record> recordFrom(std::string_view bytes) {
    Record record;
    Take take(bytes);
    fields(record, take);
    if (!take.isWhole())
        return std::nullopt;
    return record;
}

} // namespace

std::string toBytes(const Request& request) {
    return bytesOf(request);
}
std::string toBytes(const Compilation& compilation) {
    return bytesOf(compilation);
}

std::optional<Request> requestFrom(std::string_view bytes) {
    return recordFrom<Request>(bytes);
}
std::optional<Compilation> compilationFrom(std::string_view bytes) {
    return recordFrom<Compilation>(bytes);
}

} // namespace tarnwick::msl
