// A peer's side of the benchmarks: one operation a run, timed inside the process, its figures as a line of JSON.
//
//   node peers.mjs PEER open TEXT
//   node peers.mjs PEER export TEXT TARGET
//   node peers.mjs PEER calculate TEXT FORMULA
//   node peers.mjs duckdb find TEXT WANTED MOST
//   node peers.mjs PEER search TEXT SEARCH
//   node peers.mjs PEER sort TEXT FIELDS
//   node peers.mjs PEER duplicates TEXT FIELDS
//   node peers.mjs PEER quartiles TEXT FIELD
//   node peers.mjs duckdb make-text PARQUET TARGET
import { createRequire } from 'node:module';

const require = createRequire(import.meta.url);
const threads = '2';

async function timed(work) {
  const start = performance.now();
  const result = await work();
  return { ms: performance.now() - start, result };
}

const quoted = (text) => `'${text.replaceAll("'", "''")}'`;

// The formulas of the benchmarks, by their names, in the peers' languages.
const sql = {
  numbers: ['delay * 2 + distance / 3', 'sum(v)'],
  choice: ["case when delay > 30 then 'late' else 'on time' end", 'sum(strlen(v))'],
  join: ["origin || '-' || destination", 'sum(strlen(v))'],
};

function polarsExpression(pl, formula) {
  const { col, lit, when, concatString } = pl;
  if (formula === 'numbers') return col('delay').mul(2).plus(col('distance').div(3));
  if (formula === 'choice') return when(col('delay').gt(30)).then(lit('late')).otherwise(lit('on time'));
  return concatString([col('origin'), lit('-'), col('destination')], '');
}

// The searches of the benchmarks, in the same way.
const sqlConditions = {
  narrow: "delay > 30 and starts_with(origin, 'S')",
  few: "regexp_matches(destination, '^[LS]A')",
  date: "regexp_matches(date, '-0[1-3] 1[0-9]:')",
};

function polarsCondition(pl, search) {
  const { col } = pl;
  if (search === 'narrow') return col('delay').gt(30).and(col('origin').str.contains('^S'));
  return search === 'few' ? col('destination').str.contains('^[LS]A') : col('date').str.contains('-0[1-3] 1[0-9]:');
}

async function duckdb(operation, source, target, most) {
  const { DuckDBInstance } = require('@duckdb/node-api');
  const instance = await DuckDBInstance.create(':memory:', { threads });
  const connection = await instance.connect();
  if (operation === 'make-text') {
    await connection.run(`copy (select * from read_parquet(${quoted(source)})) to ${quoted(target)} (format csv, header)`);
    return {};
  }
  // Ours keeps the dates as texts, and so does a search in them.
  const options = operation === 'find' || operation === 'search' ? ", types = {'date': 'varchar'}" : '';
  const open = () => connection.run(`create table flights as select * from read_csv(${quoted(source)}${options})`);
  const opened = await timed(open);
  if (operation === 'open') {
    const sums = await connection.runAndReadAll('select count(*), sum(delay) from flights');
    const [records, delay] = sums.getRowsJson()[0].map(Number);
    return { ms: opened.ms, records, delay };
  }
  if (operation === 'calculate') {
    const [expression, sum] = sql[target];
    const { ms } = await timed(() => connection.run(`create table calculated as select ${expression} as v from flights`));
    const sums = await connection.runAndReadAll(`select count(*), ${sum} from calculated`);
    const [records, found] = sums.getRowsJson()[0].map(Number);
    return { ms, records, sum: found };
  }
  if (operation === 'find') {
    const wanted = quoted(`%${target}%`);
    const shown = ['date', 'origin', 'destination'].map((column) => `${column} ilike ${wanted}`).join(' or ');
    const limit = Number(most) === 0 ? '' : ` limit ${most}`;
    const { ms } = await timed(() => connection.run(`create table found as select rowid as r from flights where ${shown}${limit}`));
    const counted = await connection.runAndReadAll('select count(*) from found');
    return { ms, records: Number(counted.getRowsJson()[0][0]) };
  }
  if (operation === 'search') {
    const condition = sqlConditions[target];
    const { ms } = await timed(() => connection.run(`create table found as select rowid as r from flights where ${condition}`));
    const sums = await connection.runAndReadAll('select count(*) from found');
    return { ms, found: Number(sums.getRowsJson()[0][0]) };
  }
  // Of the records found, only their numbers are kept, as Rowvane does.
  const keep = (query) => timed(() => connection.run(`create table found as ${query}`));
  const summed = async (ms, sum) => {
    const sums = await connection.runAndReadAll(
      `select count(*), ${sum} from (select *, row_number() over () as n from found) as f join flights on flights.rowid = f.r`);
    const [records, value] = sums.getRowsJson()[0].map(Number);
    return { ms, records, sum: value };
  };
  if (operation === 'sort') {
    const { ms } = await keep(`select rowid as r from flights order by ${target}`);
    return summed(ms, 'sum(distance * ((n - 1) % 1000 + 1))');
  }
  if (operation === 'sort-all') {
    const { ms } = await timed(() => connection.run(`create table sorted as select * from flights order by ${target}`));
    const sums = await connection.runAndReadAll(
      'select count(*), sum(distance * ((n - 1) % 1000 + 1)) from (select distance, row_number() over () as n from sorted)');
    const [records, sum] = sums.getRowsJson()[0].map(Number);
    return { ms, records, sum };
  }
  if (operation === 'duplicates') {
    const { ms } = await keep(`select rowid as r from flights where (${target}) in
      (select (${target}) from flights group by ${target} having count(*) > 1)`);
    return summed(ms, 'sum(delay)');
  }
  if (operation === 'quartiles') {
    const { ms } = await keep(`with q as (select quantile_cont(${target}, [0.25, 0.5]) as v from flights)
      select flights.rowid as r from flights, q where ${target} >= v[1] and ${target} < v[2]`);
    return summed(ms, 'sum(delay)');
  }
  return { ms: (await timed(() => connection.run(`copy flights to ${quoted(target)} (format csv, header)`))).ms };
}

async function polars(operation, source, target) {
  const pl = require('nodejs-polars');
  const { ms, result: table } = await timed(() => pl.readCSV(source));
  if (operation === 'open') return { ms, records: table.height, delay: Number(table.getColumn('delay').sum()) };
  if (operation === 'calculate') {
    const expression = polarsExpression(pl, target).alias('v');
    const calculated = await timed(() => table.select(expression));
    const column = calculated.result.getColumn('v');
    const sum = target === 'numbers' ? column : column.str.lengths();
    return { ms: calculated.ms, records: calculated.result.height, sum: Number(sum.sum()) };
  }
  if (operation === 'search') {
    const condition = polarsCondition(pl, target).alias('v');
    const found = await timed(() => table.select(condition));
    return { ms: found.ms, found: found.result.filter(pl.col('v')).height };
  }
  if (operation === 'sort') {
    const { ms, result } = await timed(() => table.sort(target.split(',')));
    const weights = pl.Series('w', Float64Array.from({ length: result.height }, (_, i) => (i % 1000) + 1));
    return { ms, records: result.height, sum: Number(result.getColumn('distance').cast(pl.Float64).mul(weights).sum()) };
  }
  if (operation === 'duplicates') {
    const { ms, result } = await timed(() => table.filter(table.select(...target.split(',')).isDuplicated()));
    return { ms, records: result.height, sum: Number(result.getColumn('delay').sum()) };
  }
  if (operation === 'quartiles') {
    const { col } = pl;
    const { ms, result } = await timed(() => {
      const numbers = table.getColumn(target);
      const [first, median] = [0.25, 0.5].map((q) => numbers.quantile(q, 'linear'));
      return table.filter(col(target).gtEq(first).and(col(target).lt(median)));
    });
    return { ms, records: result.height, sum: Number(result.getColumn('delay').sum()) };
  }
  return { ms: (await timed(() => table.writeCSV(target))).ms };
}

const peers = {
  duckdb,
  'duckdb-all': (operation, source, target) => duckdb(operation, source, target, 0, ', sample_size = -1'),
  polars,
};

const [peer, operation, ...paths] = process.argv.slice(2);
console.log(JSON.stringify(await peers[peer](operation, ...paths)));
