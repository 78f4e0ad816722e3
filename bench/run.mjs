// Runs Rowvane and its peers in turns and reports the best time of each.
import { execFileSync, spawnSync } from 'node:child_process';
import { closeSync, copyFileSync, existsSync, mkdirSync, openSync, readFileSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { cpus, totalmem } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const bench = dirname(fileURLToPath(import.meta.url));
const root = dirname(bench);
const data = join(bench, 'data');
const engine = join(root, 'build/bench/bench/rowvane_bench');
const flights = join(data, 'flights-3m.csv');
const flightsBytes = 105_783_734;
const flightsRecords = 3_000_000;
const maxRecords = 12_582_912;
const tooManyRecordsNotice = 123;
const largeBytes = 2 * 1024 ** 3;
const spareBytes = 64 * 1024 ** 2;

const help = `Usage: bench/run [OPTION...]
  --rounds N    measure each operation N times and take the best (5)
  --disk DIR    folder for what is written (bench/data/out)
  --memory DIR  folder in memory, for the figures without a disk (/dev/shm)
  --large       also 12,582,912 records and a text of 2 GB
  --no-doc      leave doc/benchmarks.md as it is`;

function parseOptions(words) {
  const options = { rounds: 5, disk: join(data, 'out'), memory: '/dev/shm', large: false, doc: true };
  for (let i = 0; i < words.length; ++i) {
    if (words[i] === '--rounds') options.rounds = Number(words[++i]);
    else if (words[i] === '--disk') options.disk = words[++i];
    else if (words[i] === '--memory') options.memory = words[++i];
    else if (words[i] === '--large') options.large = true;
    else if (words[i] === '--no-doc') options.doc = false;
    else stop(help, words[i] === '--help' ? 0 : 2);
  }
  if (!(options.rounds >= 1)) stop(help, 2);
  return options;
}

function stop(message, code = 1) {
  (code === 0 ? console.log : console.error)(message);
  process.exit(code);
}

const options = parseOptions(process.argv.slice(2));

// ---- running programs

function run(program, words, settings = {}) {
  const result = spawnSync(program, words, { encoding: 'utf8', maxBuffer: 1 << 26, ...settings });
  if (result.error) stop(`${program}: ${result.error.message}`);
  if (result.status !== 0) stop(`${program} ${words.join(' ')} failed:\n${result.stderr ?? ''}`);
  return result.stdout ?? '';
}

const lastLine = (text) => text.trim().split('\n').at(-1);
const ours = (...words) => JSON.parse(lastLine(run(engine, words)) || '{}');
const peer = (...words) =>
  JSON.parse(lastLine(run(process.execPath, [join(bench, 'peers.mjs'), ...words],
                          { env: { ...process.env, POLARS_MAX_THREADS: '2' } })));

// Programs that can't be timed from inside: start and end count.
function timed(program, words, settings) {
  const start = process.hrtime.bigint();
  const output = run(program, words, settings);
  return { ms: Number(process.hrtime.bigint() - start) / 1e6, output };
}

function sqliteOpen(text) {
  const { ms, output } = timed('sqlite3', [':memory:', '-cmd', '.mode csv', '-cmd', `.import "${text}" flights`,
                                           'select count(*), sum(delay) from flights']);
  const [records, delay] = lastLine(output).split(',').map(Number);
  return { ms, records, delay };
}

function pigz(text, target, level) {
  const file = openSync(target, 'w');
  try {
    return timed('pigz', ['-p', '2', `-${level}`, '-c', text], { stdio: ['ignore', file, 'pipe'] });
  } finally {
    closeSync(file);
  }
}

// ---- checks: all contenders must have made the same of the flights

let expected;

function check(what, found) {
  if (found.records !== expected.records || found.delay !== expected.delay) {
    stop(`${what}: ${found.records} records with delays of ${found.delay}, not ${expected.records} with ${expected.delay}`);
  }
}

const checkText = (what, path) => check(what, ours('sum', path));

function checkPacked(what, path) {
  const result = spawnSync('sh', ['-c', 'pigz -dc "$1" | "$2" sum -', 'sh', path, engine], { encoding: 'utf8' });
  if (result.status !== 0) stop(`${what}: ${result.stderr}`);
  check(what, JSON.parse(lastLine(result.stdout)));
}

// ---- data

function makeFlights() {
  mkdirSync(data, { recursive: true });
  mkdirSync(options.disk, { recursive: true });
  if (!existsSync(flights) || statSync(flights).size !== flightsBytes) {
    peer('duckdb', 'make-text', join(bench, 'node_modules/vega-datasets/data/flights-3m.parquet'), flights);
  }
  if (statSync(flights).size !== flightsBytes) stop(`${flights} has ${statSync(flights).size} bytes, not ${flightsBytes}`);
  expected = ours('sum', flights);  // also brings the file into the system's cache
  if (expected.records !== flightsRecords) stop(`${flights} has ${expected.records} records`);
}

const onDisk = (name) => join(options.disk, name);
const inMemory = (name) => join(options.memory, `rowvane-bench-${process.pid}-${name}`);
const made = new Set();

function output(path) {
  rmSync(path, { force: true });
  made.add(path);
  return path;
}

// ---- what is measured

// An operation has contenders, each measuring once and answering {ms}. Goal: the most that ours may take of the best
// peer's time, or of the peer `against`; most: the most milliseconds that ours may take.
function openOperation() {
  const contender = (name, open) => [name, () => {
    const found = open();
    check(`${name}, open`, found);
    return found;
  }];
  return {
    name: 'open the text',
    goal: 1.0,
    contenders: Object.fromEntries([
      contender('Rowvane', () => ours('open-text', flights)),
      contender('DuckDB', () => peer('duckdb', 'open', flights)),
      contender('DuckDB, all sampled', () => peer('duckdb-all', 'open', flights)),
      contender('Polars', () => peer('polars', 'open', flights)),
      contender('sqlite3', () => sqliteOpen(flights)),
    ]),
  };
}

function exportOperation(name, place) {
  const contender = (label, write) => [label, () => {
    const target = output(place(`${label.toLowerCase()}.csv`));
    const found = write(target);
    checkText(`${label}, ${name}`, target);
    rmSync(target);
    return found;
  }];
  return {
    name,
    goal: 0.8,
    contenders: Object.fromEntries([
      contender('Rowvane', (target) => ours('export', flights, target)),
      contender('DuckDB', (target) => peer('duckdb', 'export', flights, target)),
      contender('Polars', (target) => peer('polars', 'export', flights, target)),
    ]),
  };
}

function saveOperation(level, where, place) {
  return {
    name: `save at level ${level} ${where}`,
    goal: 1.0,
    contenders: {
      Rowvane: () => {
        const target = output(place(`level-${level}.rvb`));
        const found = ours('save', flights, target, String(level));
        check(`saved at level ${level}`, ours('open', target));
        return { ...found, size: statSync(target).size };
      },
      pigz: () => {
        const target = output(place(`level-${level}.gz`));
        const found = pigz(flights, target, level);
        checkPacked(`pigz -${level}`, target);
        return { ms: found.ms, size: statSync(target).size };
      },
    },
  };
}

// Against the time of our own opening of the text, which `compare` puts in.
function openDatabaseOperation() {
  const saved = output(onDisk('flights.rvb'));
  ours('save', flights, saved, '1');
  return {
    name: 'open the database',
    goal: 1.3,
    contenders: {
      Rowvane: () => {
        const found = ours('open', saved);
        check('open the database', found);
        return found;
      },
      'Rowvane, text': () => ours('open-text', flights),
    },
  };
}

// A database of the flights and a small table. Changing the small one may cost its own saving and raw copying.
function editOperations() {
  const source = output(onDisk('two-tables.rvb'));
  ours('make-two-tables', flights, source);
  const copy = output(onDisk('two-tables-copy.rvb'));
  const edited = output(onDisk('two-tables-edited.rvb'));
  const copyAndFlush = () => {
    rmSync(copy, { force: true });
    return timed('sh', ['-c', 'cp "$1" "$2" && sync "$2"', 'sh', source, copy]);
  };
  const saveEdited = (table) => {
    copyFileSync(source, edited);
    execFileSync('sync', [edited]);
    return ours('save-edited', edited, table);
  };
  return [
    {
      name: 'save after a change to the small of two tables',
      goal: 1.0,
      contenders: {
        Rowvane: () => saveEdited('airports'),
        'small table alone + cp + sync': () => {
          const small = ours('save-small', output(onDisk('small.rvb')));
          return { ms: small.ms + copyAndFlush().ms };
        },
      },
    },
    {
      name: 'save after a change to the big of two tables',
      contenders: { Rowvane: () => saveEdited('flights'), 'cp + sync': copyAndFlush },
    },
  ];
}

// Against the same without protection.
function protectedOperations(cipher) {
  const name = cipher.split(' ')[0];
  const saved = output(onDisk(`${name}.rvb`));
  const plain = output(onDisk(`${name}-plain.rvb`));
  ours('save-protected', flights, saved, cipher);
  ours('save', flights, plain, '1');
  const open = (operation, path) => {
    const found = ours(operation, path);
    check(`${operation}, ${name}`, found);
    return found;
  };
  const save = (operation, choice) => ours(operation, flights, output(onDisk(`${name}-saved.rvb`)), choice);
  return [
    {
      name: `save protected by ${name}`,
      goal: 1.6,
      contenders: {
        Rowvane: () => save('save-protected', cipher),
        'Rowvane, plain': () => save('save', '1'),
      },
    },
    {
      name: `open protected by ${name}`,
      goal: 1.6,
      contenders: {
        Rowvane: () => open('open-protected', saved),
        'Rowvane, plain': () => open('open', plain),
      },
    },
  ];
}

// A field worked out for all records.
function calculateOperation(label, name, type, formula) {
  let sum;
  const contender = (who, calculate) => [who, () => {
    const found = calculate();
    sum ??= found.sum;
    if (found.records !== flightsRecords || Math.abs(found.sum - sum) > 1e-9 * sum) {
      stop(`${who}, ${label}: ${found.records} records, sum ${found.sum}, not ${sum}`);
    }
    return found;
  }];
  return {
    name: label,
    goal: 1.0,
    contenders: Object.fromEntries([
      contender('Rowvane', () => ours('calculate', flights, type, formula)),
      contender('DuckDB', () => peer('duckdb', 'calculate', flights, name)),
      contender('Polars', () => peer('polars', 'calculate', flights, name)),
    ]),
  };
}

// The records that show a text, letter case aside: the first 50, as they are shown while it is typed, and all.
function findOperations(wanted) {
  return [50, 0].map((most) => {
    let records;
    const contender = (who, find) => [who, () => {
      const found = find();
      records ??= found.records;
      if (found.records !== records) stop(`${who}, find ${wanted}: ${found.records} records, not ${records}`);
      return found;
    }];
    return {
      name: most === 0 ? `find all "${wanted}" in texts` : `find the first ${most} "${wanted}" in texts`,
      goal: 1.0,
      contenders: Object.fromEntries([
        contender('Rowvane', () => ours('find', flights, wanted, String(most), 'text')),
        contender('DuckDB', () => peer('duckdb', 'find', flights, wanted, String(most))),
      ]),
    };
  });
}

// Records that satisfy criteria.
function searchOperation(label, name, criteria, goals) {
  let records;
  const contender = (who, search) => [who, () => {
    const found = search();
    records ??= found.found;
    if (found.found !== records) stop(`${who}, ${label}: ${found.found} records, not ${records}`);
    return found;
  }];
  return {
    name: label,
    ...goals,
    contenders: Object.fromEntries([
      contender('Rowvane', () => ours('search', flights, criteria)),
      contender('DuckDB', () => peer('duckdb', 'search', flights, name)),
      contender('Polars', () => peer('polars', 'search', flights, name)),
    ]),
  };
}

// All contenders must find as many records with the same sum as the first.
function findOperation(name, goal, contenders) {
  let first;
  const checked = ([who, find]) => [who, () => {
    const found = find();
    first ??= found;
    if (found.records !== first.records || found.sum !== first.sum) {
      stop(`${who}, ${name}: ${found.records} records, sum ${found.sum}, not ${first.records}, sum ${first.sum}`);
    }
    return found;
  }];
  return { name, goal, contenders: Object.fromEntries(Object.entries(contenders).map(checked)) };
}

// Polars is left out where it takes half a minute.
function sortOperations() {
  const keys = 'origin,destination,distance,date';
  return [
    findOperation('sort by distance', 0.3, {
      Rowvane: () => ours('sort', flights, 'distance', 'language'),
      DuckDB: () => peer('duckdb', 'sort-all', flights, 'distance'),
      'DuckDB, record numbers only': () => peer('duckdb', 'sort', flights, 'distance'),
      Polars: () => peer('polars', 'sort', flights, 'distance'),
    }),
    findOperation('sort by origin, destination, distance, date', 0.3, {
      Rowvane: () => ours('sort', flights, keys, 'language'),
      'DuckDB, neutral': () => peer('duckdb', 'sort-all', flights, keys),
      'DuckDB, neutral, record numbers only': () => peer('duckdb', 'sort', flights, keys),
    }),
  ];
}

function compareOperations() {
  const keys = 'origin,destination,date';
  return [
    findOperation('duplicates in origin, destination, date', 0.5, {
      Rowvane: () => ours('duplicates', flights, keys),
      'DuckDB, neutral': () => peer('duckdb', 'duplicates', flights, keys),
      'Polars, neutral': () => peer('polars', 'duplicates', flights, keys),
    }),
    findOperation('second quartile of the delays', 0.5, {
      Rowvane: () => ours('quartiles', flights, 'delay'),
      DuckDB: () => peer('duckdb', 'quartiles', flights, 'delay'),
      Polars: () => peer('polars', 'quartiles', flights, 'delay'),
    }),
  ];
}

// ---- measuring

function measure(operations) {
  const results = operations.map(({ name, goal, against, most, contenders }) => ({
    name, goal, against, most, best: Object.fromEntries(Object.keys(contenders).map((label) => [label, { ms: Infinity }])),
  }));
  for (let round = 1; round <= options.rounds; ++round) {
    for (const [i, operation] of operations.entries()) {
      for (const [label, once] of Object.entries(operation.contenders)) {
        const found = once();
        console.error(`${round}/${options.rounds} ${operation.name}, ${label}: ${found.ms.toFixed(0)} ms`);
        if (found.ms < results[i].best[label].ms) results[i].best[label] = found;
      }
    }
  }
  return results;
}

const milliseconds = (ms) => ms.toFixed(0);
const megabytes = (bytes) => `${(bytes / 1e6).toFixed(1)} MB`;
const verdict = (value, goal) => (value <= goal ? 'met' : 'missed');

function table(heads, rows) {
  const lines = [heads, heads.map(() => '---'), ...rows];
  return lines.map((cells) => `| ${cells.join(' | ')} |`).join('\n');
}

function timesTable(results) {
  const rows = results.map(({ name, goal, against, most, best }) => {
    const { Rowvane: own, ...peers } = best;
    const bestPeer = Math.min(...Object.values(peers).map(({ ms }) => ms));
    const ratio = own.ms / bestPeer;
    const measured = against === undefined ? ratio : own.ms / peers[against].ms;
    const others = Object.entries(peers).map(([label, { ms }]) => `${label} ${milliseconds(ms)}`).join(', ');
    const row = [name, milliseconds(own.ms), others, ratio.toFixed(2)];
    if (most !== undefined) return [...row, `<= ${most} ms`, verdict(own.ms, most)];
    if (goal === undefined) return [...row, '', ''];
    return [...row, `<= ${goal.toFixed(1)}${against === undefined ? '' : ` of ${against}`}`, verdict(measured, goal)];
  });
  return table(['operation', 'Rowvane, ms', 'others, ms', 'ratio to the best', 'goal', ''], rows);
}

function memoryTable(opened) {
  const resident = opened.rss_growth / flightsBytes;
  const peak = opened.peak_growth / flightsBytes;
  return table(['memory of the opened flights', 'bytes', 'of the text', 'goal', ''], [
    ['resident set', megabytes(opened.rss_growth), resident.toFixed(2), '<= 1.2', verdict(resident, 1.2)],
    ['its peak while opening', megabytes(opened.peak_growth), peak.toFixed(2), '', ''],
    ['columns', megabytes(opened.table_bytes), (opened.table_bytes / flightsBytes).toFixed(2), '', ''],
  ]);
}

function levelsTable() {
  const rows = [1, 2, 3, 4, 5, 6].map((level) => {
    const target = output(inMemory(`level-${level}.rvb`));
    const packed = output(inMemory(`level-${level}.gz`));
    let own = Infinity;
    let other = Infinity;
    for (let round = 0; round < Math.min(options.rounds, 2); ++round) {
      own = Math.min(own, ours('save', flights, target, String(level)).ms);
      other = Math.min(other, pigz(flights, packed, level).ms);
    }
    const row = [level, milliseconds(own), megabytes(statSync(target).size), milliseconds(other),
                 megabytes(statSync(packed).size)];
    rmSync(target);
    rmSync(packed);
    console.error(`level ${level}: ${row[1]} ms, ${row[2]}`);
    return row;
  });
  return table(['level', 'Rowvane, ms', 'size', 'pigz, ms', 'size'], rows);
}

function largeTable() {
  const rows = [];
  const row = (name, found, goal = '', met = '') => {
    rows.push([name, found, goal, met]);
    console.error(`${name}: ${found} ${goal} ${met}`);
  };
  const most = output(onDisk('most.csv'));
  const saved = output(onDisk('most.rvb'));
  ours('make-records', flights, most, String(maxRecords));
  const sum = ours('sum', most);
  const asExpected = (found) => found.records === sum.records && found.delay === sum.delay && found.notices.length === 0;
  const opened = ours('open-text', most);
  row(`open ${maxRecords} records`, `${milliseconds(opened.ms)} ms`, 'all, no notice', asExpected(opened) ? 'met' : 'missed');
  row(`save ${maxRecords} records`, `${milliseconds(ours('save', most, saved, '1').ms)} ms`);
  const reopened = ours('open', saved);
  row(`reopen ${maxRecords} records`, `${milliseconds(reopened.ms)} ms`, 'all, no notice', asExpected(reopened) ? 'met' : 'missed');
  rmSync(saved);

  ours('make-records', flights, most, String(maxRecords + 1));
  const tooMany = ours('open-text', most);
  const told = tooMany.records === maxRecords && tooMany.notices.includes(tooManyRecordsNotice);
  row(`open ${maxRecords + 1} records`, `${tooMany.records} records, notices ${tooMany.notices.join(', ')}`,
      `notice ${tooManyRecordsNotice}`, told ? 'met' : 'missed');
  rmSync(most);

  const wide = output(onDisk('wide.csv'));
  const { records } = ours('make-wide', flights, wide, String(largeBytes));
  const large = ours('open-text', wide);
  if (large.records !== records) stop(`wide text: ${large.records} records, not ${records}`);
  const beside = large.peak_growth - large.table_bytes;
  row(`open a text of ${megabytes(statSync(wide).size)}`, `${milliseconds(large.ms)} ms`);
  row('its table', `${megabytes(large.table_bytes)}`);
  row('memory beside the table, at the peak', megabytes(beside), `<= ${megabytes(spareBytes)}`, verdict(beside, spareBytes));
  const givenBack = large.peak_growth - large.rss_growth;
  row('the peak above what stays resident', megabytes(givenBack), `<= ${megabytes(spareBytes)}`,
      verdict(givenBack, spareBytes));
  rmSync(wide);
  return table(['large tables', 'found', 'goal', ''], rows);
}

function windowTable() {
  const rows = [];
  const ofWindow = (...words) => JSON.parse(run(join(root, 'build/bench/bench/window_bench'), words, { stdio: ['ignore', 'pipe', 'ignore'] }));
  const row = (name, value, unit, most) => {
    rows.push([name, `${value.toFixed(1)} ${unit}`, most ? `<= ${most} ${unit}` : '', most ? verdict(value, most) : '']);
    console.error(rows.at(-1).join(' '));
  };
  const sample = output(onDisk('sample.rvb'));
  run(join(root, 'samples/make-sample'), [join(root, 'build/bench/src/cli/rvb'), sample]);
  const starts = Array.from({ length: options.rounds }, () => ofWindow('start', sample).ms);
  row('from the start to the first picture of the sample', Math.min(...starts), 'ms', 300);
  for (const [name, what, every] of [['long', '12,582,912 records', 20], ['wide', '2,000 fields', 1]]) {
    const found = ofWindow(name, String(every));
    row(`${what}: the slowest of ${found.pages} pages`, found.worst_ms, 'ms', 16);
    if (found.over_goal > 0) row(`${what}: those over the goal, ${found.over_goal}, shown once more: the slowest`, found.worst_again_ms, 'ms', 16);
    row(`${what}: its processor time at most`, found.worst_cpu_ms, 'ms', 16);
    row(`${what}: 999 of 1,000 pages at most`, found.p999_ms, 'ms');
    row(`${what}: a page on average`, found.mean_ms, 'ms');
    row(`${what}: memory beside the table`, found.mb_at_end - found.mb_before, 'MB', 150);
  }
  return table(['the window, 1280 by 800', 'found', 'goal', ''], rows);
}

// ---- reporting

const firstLine = (text) => text.trim().split('\n')[0];
const packageVersion = (name) => JSON.parse(readFileSync(join(bench, 'node_modules', name, 'package.json'))).version;

function machine() {
  const fileSystem = (path) => run('df', ['--output=fstype', path]).trim().split('\n').at(-1);
  const commit = firstLine(run('git', ['-C', root, 'describe', '--always', '--dirty']));
  const pigzVersion = firstLine(run('sh', ['-c', 'pigz --version 2>&1']));
  return [
    `Commit ${commit}, ${new Date().toISOString().slice(0, 10)}; command: \`bench/run ${process.argv.slice(2).join(' ')}\`,`,
    `best of ${options.rounds} rounds in which the contenders take turns.`,
    `${cpus().length} x ${cpus()[0].model.trim()}, ${(totalmem() / 2 ** 30).toFixed(0)} GiB;`,
    `disk: ${fileSystem(options.disk)}, memory: ${fileSystem(options.memory)}; two threads for everybody.`,
    `DuckDB ${packageVersion('@duckdb/node-api')}, Polars ${packageVersion('nodejs-polars')}`,
    `(Node.js ${process.version}), sqlite3 ${run('sqlite3', ['--version']).split(' ')[0]}, ${pigzVersion}.`,
  ].join('\n').replace('run `', 'run`');
}

function writeDocument(report) {
  const path = join(root, 'doc/benchmarks.md');
  const begin = '<!-- figures: begin -->';
  const end = '<!-- figures: end -->';
  const text = readFileSync(path, 'utf8');
  const first = text.indexOf(begin);
  const last = text.indexOf(end);
  if (first < 0 || last < first) stop(`${path} lacks its markers`);
  writeFileSync(path, `${text.slice(0, first + begin.length)}\n${report}\n${text.slice(last)}`);
}

// Also where the run ends early.
process.on('exit', () => {
  for (const path of made) rmSync(path, { force: true });
});
process.on('SIGINT', () => process.exit(130));

makeFlights();
const operations = [
  openOperation(),
  exportOperation('write as text, to disk', onDisk),
  exportOperation('write as text, to memory', inMemory),
  saveOperation(1, 'to disk', onDisk),
  saveOperation(6, 'to disk', onDisk),
  saveOperation(1, 'to memory', inMemory),
  saveOperation(6, 'to memory', inMemory),
  openDatabaseOperation(),
  ...editOperations(),
  ...protectedOperations('Blowfish CFB'),
  ...protectedOperations('Twofish CFB'),
  calculateOperation('calculate `=delay*2+distance/3`', 'numbers', 'number', '=delay*2+distance/3'),
  calculateOperation('calculate `=if(delay>30,"late","on time")`', 'choice', 'text', '=if(delay>30,"late","on time")'),
  calculateOperation('calculate `=origin&"-"&destination`', 'join', 'text', '=origin&"-"&destination'),
  ...findOperations('lax'),
  ...findOperations('06-30 23:5'),
  searchOperation('search for delays above 30 and origins with S', 'narrow', 'delay:f:30;origin:c:S', { most: 20 }),
  searchOperation('search destinations for `^[LS]A`', 'few', 'destination:b:^[LS]A', { most: 15 }),
  searchOperation('search dates for `-0[1-3] 1[0-9]:`', 'date', 'date:b:-0[1-3] 1[0-9]:', { goal: 1.5, against: 'DuckDB' }),
  ...sortOperations(),
  ...compareOperations(),
];
const results = measure(operations);
const parts = [machine(), timesTable(results), memoryTable(results[0].best.Rowvane), levelsTable()];
if (options.large) parts.push(largeTable());
parts.push(windowTable());
const report = parts.join('\n\n');
console.log(report);
if (options.doc) writeDocument(report);
