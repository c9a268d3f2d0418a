#!/usr/bin/env python3
"""Checks that every file includes what it names: tools/includes.py [file...] (all of the product without).

- A standard name needs its header in the file itself or in a header of this project that the file includes. What
  another standard header happens to include may be missing in another standard library.
- An include of the standard library or of this project of which nothing is named is one too many.

Sizes need no header of their own: all containers declare them. A header that holds nothing but includes is for those
who want them all. Another include that stands for its readers, not for the file, says so behind it: "// for callers".
"""
import os
import re
import subprocess
import sys

# Header: the names of std:: that it is included for. A name under several headers is content with any of them.
STANDARD = {
    'algorithm': '''adjacent_find all_of any_of binary_search clamp copy copy_if copy_n count count_if equal equal_range fill
        fill_n find find_end find_if find_if_not for_each generate generate_n includes inplace_merge
        lexicographical_compare lower_bound max max_element min min_element minmax mismatch none_of nth_element
        partial_sort partition replace replace_if remove_copy remove_if reverse rotate search sort stable_partition
        stable_sort transform unique upper_bound ranges''',
    'array': 'array to_array',
    'atomic': '''atomic atomic_flag memory_order_acquire memory_order_relaxed memory_order_release memory_order_seq_cst
        atomic_thread_fence''',
    'bit': 'bit_cast bit_ceil bit_floor bit_width countl_zero countr_zero endian has_single_bit popcount rotl rotr',
    'charconv': 'chars_format from_chars to_chars from_chars_result to_chars_result',
    'chrono': 'chrono chrono_literals',
    'climits': '', 'cctype': 'toupper tolower isdigit isalpha isspace isalnum', 'cerrno': '',
    'clocale': 'setlocale localeconv', 'cstdarg': '', 'csignal': 'signal raise sig_atomic_t',
    'cmath': '''abs ceil copysign fabs floor fma fmod frexp isfinite isinf isnan ldexp llround lround log10 log2 modf nan
        nearbyint nextafter pow rint round signbit sqrt trunc''',
    'compare': 'strong_ordering weak_ordering partial_ordering is_lt is_gt is_eq',
    'concepts': '''same_as constructible_from convertible_to floating_point integral invocable derived_from
        signed_integral unsigned_integral''',
    'condition_variable': 'condition_variable condition_variable_any',
    'cstddef': 'byte max_align_t nullptr_t ptrdiff_t size_t',
    'cstdint': '''int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t intptr_t uintptr_t intmax_t
        uintmax_t''',
    'cstdio': '''FILE fclose fflush fgets fopen fprintf fputc fputs fread fwrite printf puts remove rename snprintf
        sscanf vsnprintf perror getchar''',
    'cstdlib': 'abort abs atexit atof atoi atoll exit free getenv malloc quick_exit strtod strtol strtoll strtoull system',
    'cstring': 'memchr memcmp memcpy memmove memset strchr strcmp strcpy strerror strerror_l strlen strncmp strrchr strstr',
    'ctime': 'clock gmtime localtime mktime strftime time time_t tm timespec',
    'deque': 'deque',
    'exception': '''current_exception exception exception_ptr make_exception_ptr rethrow_exception terminate
        uncaught_exceptions''',
    'filesystem': 'filesystem',
    'fstream': 'fstream ifstream ofstream',
    'functional': 'equal_to function greater hash invoke less multiplies plus ref cref',
    'initializer_list': 'initializer_list',
    'iomanip': 'setw setfill setprecision hex',
    'iostream': 'cerr cin clog cout',
    'iterator': '''advance back_inserter begin data distance empty end inserter istreambuf_iterator iter_reference_t
        make_move_iterator make_reverse_iterator move_iterator next ostreambuf_iterator prev rbegin rend
        reverse_iterator size ssize forward_iterator_tag input_iterator_tag random_access_iterator_tag''',
    'limits': 'numeric_limits',
    'list': 'list', 'locale': 'locale',
    'map': 'map multimap',
    'memory': '''addressof allocator construct_at destroy_at enable_shared_from_this make_shared make_unique shared_ptr
        uninitialized_copy unique_ptr weak_ptr to_address''',
    'mutex': 'call_once lock_guard mutex once_flag recursive_mutex scoped_lock unique_lock',
    'new': 'align_val_t bad_alloc bad_array_new_length get_new_handler launder nothrow nothrow_t set_new_handler',
    'numeric': 'accumulate gcd inner_product iota partial_sum reduce',
    'optional': 'nullopt nullopt_t optional make_optional',
    'ostream': 'endl ostream', 'istream': 'istream getline',
    'random': '''mt19937 mt19937_64 random_device uniform_int_distribution uniform_real_distribution
        normal_distribution''',
    'set': 'set multiset',
    'shared_mutex': 'shared_mutex shared_lock',
    'span': 'span as_bytes',
    'sstream': 'istringstream ostringstream stringstream',
    'stdexcept': 'domain_error invalid_argument length_error logic_error out_of_range range_error runtime_error',
    'string': '''basic_string char_traits getline stod stoi stol stoll stoul string to_string u16string u32string u8string
        wstring erase erase_if''',
    'string_view': 'basic_string_view string_view u16string_view u8string_view wstring_view',
    'system_error': 'errc error_code error_condition generic_category make_error_code system_category system_error',
    'thread': 'jthread this_thread thread stop_token',
    'tuple': 'apply forward_as_tuple ignore make_tuple tie tuple',
    'type_traits': '''add_const_t common_type_t conditional_t decay_t enable_if_t false_type has_unique_object_representations_v
        integral_constant invoke_result_t is_arithmetic_v is_base_of_v is_const_v is_constructible_v
        is_convertible_v is_enum_v is_floating_point_v is_integral_v is_invocable_v is_nothrow_move_assignable_v
        is_nothrow_move_constructible_v is_null_pointer_v is_pointer_v is_same_v is_signed_v is_standard_layout_v
        is_trivially_copyable_v is_trivially_destructible_v is_unsigned_v is_void_v make_signed_t make_unsigned_t
        remove_const_t remove_cv_t remove_cvref_t remove_pointer_t remove_reference_t true_type type_identity_t
        underlying_type_t void_t is_constant_evaluated''',
    'unordered_map': 'unordered_map', 'unordered_set': 'unordered_set',
    'utility': '''as_const cmp_equal cmp_greater cmp_less declval exchange forward in_range index_sequence integer_sequence
        make_index_sequence move pair piecewise_construct swap unreachable''',
    'variant': 'bad_variant_access get_if holds_alternative monostate variant visit',
    'vector': 'vector erase erase_if',
}
# Names that containers declare beside their header: no need of their own, but reason enough for it.
LOOSE = set('size_t begin end rbegin rend size data empty ssize next prev abs swap erase erase_if move'.split())
PRODUCT = ('framework', 'platform', 'version', 'Uutilext', 'Fechas', 'Paramsql', 'Ucalculocfdi', 'Uformula', 'facil', 'tools')

WHERE = {}
for header, names in STANDARD.items():
    for name in names.split():
        WHERE.setdefault(name, set()).add(header)


def without_comments(text):
    """Comments and texts blanked out, so that what they mention does not count; includes stay."""
    token = re.compile(r'//[^\n]*|/\*.*?\*/|(?<=include )"[^"\n]*"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', re.S)
    return token.sub(lambda m: m[0] if re.match(r'"[\w/]+\.h"$', m[0]) else ' ', text)


def read(path):
    with open(path, encoding='utf-8') as file:
        return file.read()


def includes(text):
    """(header, standard?, for callers?) of each include."""
    for m in re.finditer(r'^# *include (?:<([^>]+)>|"([^"]+)")(.*)$', text, re.M):
        yield m[1] or m[2], m[1] is not None, 'for callers' in m[3]


def declared(text):
    """The names that a header of the project offers."""
    code = without_comments(text)
    names = set(re.findall(r'\b(?:class|struct|enum|enum class|union|concept|using|namespace)\s+(?:UTILVEL90_EXPORT\s+)?(\w+)', code))
    names |= set(re.findall(r'\b(\w+)\s*\(', code)) | set(re.findall(r'\b(\w+)\s*(?:\[\w*\])?\s*(?:=|\{)', code))
    names |= set(re.findall(r'^# *define (\w+)', code, re.M)) | set(re.findall(r'\b(\w+);', code))
    return names - {'vel', 'if', 'for', 'while', 'switch', 'return', 'operator', 'explicit', 'noexcept', 'std'}


def check(path):
    text = read(path)
    code = without_comments(text)
    body = re.sub(r'^# *include.*$', '', code, flags=re.M)
    own = path[:-4] + '.h' if path.endswith('.cpp') else ''
    here = list(includes(text))
    standard = {h for h, std, _ in here if std}
    if not re.sub(r'^# *pragma once$', '', body, flags=re.M).strip():
        return
    reach = set(standard)
    for header, std, _ in here:
        if not std and os.path.exists(header):
            reach |= {h for h, theirs, _ in includes(read(header)) if theirs}

    used = set(re.findall(r'\bstd::(\w+)', body))
    for name in sorted(used - LOOSE):
        if name in WHERE and not WHERE[name] & reach:
            yield f'std::{name} without ' + ' or '.join(f'<{h}>' for h in sorted(WHERE[name]))
    for header, std, for_callers in here:
        if for_callers:
            continue
        if std:
            if header == 'compare' and '<=>' in body:
                continue
            # Functions of C are also called by their bare names.
            named = used | set(re.findall(r'\b(\w+)\b', body)) if header.startswith('c') else used
            if STANDARD.get(header) and not any(header in WHERE.get(name, ()) for name in named):
                yield f'<{header}> of which nothing is named'
        elif header != own and header.endswith('.h') and os.path.exists(header):
            names = declared(read(header))
            if names and not any(re.search(rf'\b{n}\b', body) for n in names):
                yield f'"{header}" of which nothing is named'


def main():
    files = sys.argv[1:]
    if not files:
        listed = subprocess.run(['git', 'ls-files', '--cached', '--others', '--exclude-standard', '*.h', '*.cpp'],
                                check=True, capture_output=True, text=True).stdout.split()
        files = sorted({f for f in listed if f.split('/')[0] in PRODUCT and os.path.exists(f)})
    faults = [f'{path}: {fault}' for path in files for fault in check(path)]
    for fault in faults:
        print(fault)
    if faults or not files:
        sys.exit(1)


main()
