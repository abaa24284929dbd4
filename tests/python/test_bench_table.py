"""bench/bench_table.py: engine benchmarks paired with their baselines from Google
Benchmark's JSON, argument variants matched, stale pairs reported, and the committed
bench/pairs.tsv naming only benchmarks that exist in the bench sources."""
import io
import json
import pathlib
import re
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "bench"))
import bench_table  # noqa: E402


def run(name, real, unit="us", **extra):
    return dict(name=name, run_type="iteration", real_time=real, cpu_time=real / 2, time_unit=unit, **extra)


@pytest.fixture
def results(tmp_path):
    (tmp_path / "pick_bench.json").write_text(json.dumps({"benchmarks": [
        run("BM_Pick/1", 50.0, label="hit"), run("BM_Pick/0", 60.0),
        run("BM_Walk/1", 5.0, "ms"), run("BM_Walk/0", 6.0, "ms"),
        run("BM_Alone", 1500.0, "ns"),
        run("BM_Broken", 0.0, error_occurred=True)]}))
    (tmp_path / "empty_bench.json").write_text("")  # a filter that matched nothing
    return bench_table.read_results(tmp_path)


def test_pairs_match_argument_variants_and_the_rest_stand_alone(results):
    pairs = [("pick_bench", "BM_Pick", "BM_Walk", "walk"), ("pick_bench", "BM_Gone", "BM_Walk", "")]
    rows, problems = bench_table.build_rows(pairs, results, cpu=False, filtered=False)
    assert rows == [
        ("pick_bench", "BM_Pick/1 [hit]", "50 us", "BM_Walk/1 (walk)", "5 ms", "0.01"),
        ("pick_bench", "BM_Pick/0", "60 us", "BM_Walk/0 (walk)", "6 ms", "0.01"),
        ("pick_bench", "BM_Alone", "1.5 us", "-", "-", "-"),
        ("pick_bench", "BM_Broken", "error", "-", "-", "-"),
    ]
    assert problems == ["pair without results: pick_bench BM_Gone / BM_Walk"]
    # A filtered run reports nothing missing; --cpu reads the CPU column.
    rows, problems = bench_table.build_rows(pairs[:1], results, cpu=True, filtered=True)
    assert rows[0][2] == "25 us" and problems == []
    out = io.StringIO()
    bench_table.print_table(rows, out)
    assert out.getvalue().splitlines()[0].split() == ["program", "benchmark", "engine", "baseline", "baseline", "time", "ratio"]


@pytest.mark.parametrize("line", ["draw_bench\tBM_EngineDraw", "draw_bench  BM_EngineDraw  BM_RawGL"])
def test_a_malformed_pairs_line_names_its_place(tmp_path, line):
    path = tmp_path / "pairs.tsv"
    path.write_text("# comment\n" + line + "\n")
    with pytest.raises(SystemExit, match=r"pairs.tsv:2: expected program, engine, baseline"):
        bench_table.read_pairs(path)


def test_committed_pairs_name_benchmarks_of_their_programs():
    for program, engine, baseline, _ in bench_table.read_pairs(ROOT / "bench" / "pairs.tsv"):
        source = (ROOT / "bench" / f"{program}.cpp").read_text()
        for name in (engine, baseline):
            assert re.search(rf"\b{name.split('/')[0]}\b", source), f"{name} is not in bench/{program}.cpp"
