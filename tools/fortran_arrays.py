"""The array functions of REAL*16 and COMPLEX*32 for arrays of rank 1 to 3, with and without dim and mask. All the
arithmetic is in the functions of vectors in fortran/arrays.f90; what is made here brings arrays into that form.
"""
from fortran_generics import TYPES

RANKS = (1, 2, 3)
# Reductions: name -> types, whether there is a mask, the function of a vector, how it computes.
REDUCTIONS = {
    "sum": ("qx", True, "sum_{0}", "`qadd`, in 16 partial sums"),
    "product": ("qx", True, "product_{0}", {"q": "`qmul`, in element order", "x": "`cqmul`, in element order"}),
    "maxval": ("q", True, "largest", "`qcmp`"),
    "minval": ("q", True, "smallest", "`qcmp`"),
    "norm2": ("q", False, "length", "`qmul` `qadd` `sqrtl`, in 16 partial sums, scaled by a power of two where needed"),
}
# Locations: name -> the function of a vector, its operand before those that all have.
LOCATIONS = {"maxloc": ("extreme", "greater"), "minloc": ("extreme", "less"), "findloc": ("occurrence", "value")}
# Products of arrays: kinds of the operands and of the result.
PRODUCTS = [("qq", "q")] + [(kinds, "q") for code in "dfi" for kinds in ("q" + code, code + "q")]
COMPLEX_PRODUCTS = [("xx", "x")] + [(kinds, "x") for code in "qzd" for kinds in ("x" + code, code + "x")]


def colons(rank):
    return "(" + ", ".join(":" * rank) + ")"


def subscript(rank, dim):
    """The vector along dim, the other subscripts i, j."""
    others = iter("ij")
    return "(" + ", ".join(":" if d == dim else next(others) for d in range(1, rank + 1)) + ")"


def sized(rank):
    """The shape of a result along dim."""
    return {1: "", 2: "(size(array, 3 - dim))",
            3: "(size(array, merge(2, 1, dim == 1)), size(array, merge(2, 3, dim == 3)))"}[rank]


def along(rank, value):
    """Statements that set r from every vector along dim; value(subscript) computes one."""
    if rank == 1:
        return [f"    r = {value('(:)')}"]
    lines, indent = ["    select case (dim)"], "      "
    for dim in range(1, rank + 1):
        lines.append(f"    case ({dim})" if dim < rank else "    case default")
        at = "(i)" if rank == 2 else "(i, j)"
        if rank == 3:
            lines.append(f"{indent}do j = 1, size(r, 2)")
        lines.append(f"{indent}do i = 1, size(r{', 1' if rank == 3 else ''})")
        lines.append(f"{indent}  r{at} = {value(subscript(rank, dim))}")
        lines += [f"{indent}end do"] * (rank - 1)
    return lines + ["    end select"]


def declared(rank, kind, optional, dim):
    """The dummy arguments that the functions share, and local variables."""
    lines = [f"    {TYPES[kind]}, intent(in) :: array{colons(rank)}"]
    if dim:
        lines.append("    integer, intent(in) :: dim")
    if "mask" in optional:
        lines.append(f"    logical, intent(in), optional :: mask{colons(rank)}")
    if "back" in optional:
        lines.append("    logical, intent(in), optional :: back")
    return lines


def counters(rank):
    return {1: [], 2: ["    integer :: i"], 3: ["    integer :: i, j"]}[rank]


def kept(rank):
    """The mask as a local array, all true where there is none."""
    extents = ", ".join(f"size(array, {d})" for d in range(1, rank + 1))
    return [f"    logical :: keep({extents})"], ["    keep = .true.", "    if (present(mask)) keep = mask"]


def add_reductions(module):
    for name, (types, masked, function, how) in REDUCTIONS.items():
        for kind in types:
            vector = function.format(kind)
            for rank in RANKS:
                said = how if isinstance(how, str) else how[kind]
                shape = colons(rank)
                optional = ["mask"] if masked else []
                dims = ", ".join(["array"] + optional)
                specific = f"{name}_{kind}{rank}"
                module.name(name, specific, kind + shape + (" [mask]" if masked else ""), kind, said)
                body = [f"  pure function {specific}({dims}) result(r)"] + declared(rank, kind, optional, False)
                body.append(f"    {TYPES[kind]} :: r")
                flat = "array" if rank == 1 else "reshape(array, [size(array)])"
                if masked:
                    body += ["    if (present(mask)) then", f"      r = {vector}(pack(array, mask))", "    else",
                             f"      r = {vector}({flat})", "    end if"]
                else:
                    body.append(f"    r = {vector}({flat})")
                body += [f"  end function {specific}", ""]

                along_dim = specific + "_dim"
                result = kind + (colons(rank - 1) if rank > 1 else "")
                module.name(name, along_dim, kind + shape + " dim" + (" [mask]" if masked else ""), result, said)
                body.append(f"  pure function {along_dim}({', '.join(['array', 'dim'] + optional)}) result(r)")
                body += declared(rank, kind, optional, True) + [f"    {TYPES[kind]} :: r{sized(rank)}"] + counters(rank)
                if masked:
                    local, start = kept(rank)
                    body += local + start
                    body += along(rank, lambda s: f"{vector}(pack(array{s}, keep{s}))")
                else:
                    body += along(rank, lambda s: f"{vector}(array{s})")
                module.procedures += body + [f"  end function {along_dim}", ""]


def add_locations(module):
    for name, (vector, operand) in LOCATIONS.items():
        for value in (["q", "d", "i"] if operand == "value" else [None]):
            first = ["array", "value"] if value else ["array"]
            given = {None: operand, "q": "value"}.get(value, "real16(value)")
            for rank in RANKS:
                extra = [f"    {TYPES[value]}, intent(in) :: value"] if value else []
                operands = "q" + colons(rank) + (f" {value}" if value else "")
                local, start = kept(rank)
                specific = f"{name}_{value or ''}{rank}"
                said = "`qcmp`"
                body = [f"  pure function {specific}({', '.join(first + ['mask', 'back'])}) result(r)"]
                body += declared(rank, "q", ["mask", "back"], False) + extra + [f"    integer :: r({rank})"] + local + start
                body += [f"    r = subscripts({vector}(reshape(array, [size(array)]), {given}, &",
                         "        reshape(keep, [size(array)]), back), shape(array))", f"  end function {specific}", ""]
                module.name(name, specific, operands + " [mask] [back]", f"i({rank})", said)
                along_dim = specific + "_dim"
                body.append(f"  pure function {along_dim}({', '.join(first + ['dim', 'mask', 'back'])}) result(r)")
                body += declared(rank, "q", ["mask", "back"], True) + extra
                body += [f"    integer :: r{sized(rank)}"] + counters(rank) + local + start
                body += along(rank, lambda s: f"{vector}(array{s}, {given}, keep{s}, back)")
                module.procedures += body + [f"  end function {along_dim}", ""]
                module.name(name, along_dim, operands + " dim [mask] [back]",
                            "i" + (colons(rank - 1) if rank > 1 else ""), said)


def add_products(module):
    for kinds, result in PRODUCTS + COMPLEX_PRODUCTS:
        to = {"q": "real16", "x": "complex32"}[result]
        a, b = (name if kind == result else f"{to}({name})" for kind, name in zip(kinds, "ab"))
        said = "`qmul` `qadd`, in element order" if result == "q" else "`cqmul` `qadd`, in element order"
        head = [f"    {TYPES[kinds[0]]}, intent(in) :: a{{0}}", f"    {TYPES[kinds[1]]}, intent(in) :: b{{1}}"]
        name = f"dot_product_{kinds}"
        module.name("dot_product", name, f"{kinds[0]}(:) {kinds[1]}(:)", result, said.replace("element order", "16 partial sums"))
        module.procedures += [f"  pure function {name}(a, b) result(r)", head[0].format("(:)"), head[1].format("", "(:)"),
                              f"    {TYPES[result]} :: r", f"    r = dot_{result}({a}, {b})", f"  end function {name}", ""]
        for ranks, extents, body in (
                ((2, 2), "(size(a, 1), size(b, 2))", f"r = multiply_{result}({a}, {b})"),
                ((2, 1), "(size(a, 1))",
                 f"r = reshape(multiply_{result}({a}, reshape({b}, [size(b), 1])), [size(r)])"),
                ((1, 2), "(size(b, 2))",
                 f"r = reshape(multiply_{result}(reshape({a}, [1, size(a)]), {b}), [size(r)])")):
            name = f"matmul_{kinds}{ranks[0]}{ranks[1]}"
            left, right = (colons(rank) for rank in ranks)
            module.name("matmul", name, f"{kinds[0]}{left} {kinds[1]}{right}", result + colons(sum(ranks) - 2), said)
            module.procedures += [f"  pure function {name}(a, b) result(r)", head[0].format(left),
                                  head[1].format("", right), f"    {TYPES[result]} :: r{extents}", f"    {body}",
                                  f"  end function {name}", ""]


def add_arrays(module):
    add_reductions(module)
    add_locations(module)
    add_products(module)
