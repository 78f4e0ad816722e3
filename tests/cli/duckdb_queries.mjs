// Searches, sorts, duplicates, unique values and quartiles of rvb against the same questions asked of DuckDB: both must
// name the same records in the same order. The data and DuckDB are npm packages, looked for in NODE_PATH and in
// bench/node_modules; without them the test is skipped (exit code 77).
//   duckdb_queries.mjs RVB
import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const rvb = process.argv[2];
const modules = process.env.NODE_PATH ?? join(dirname(fileURLToPath(import.meta.url)), '../../bench/node_modules');
if (!existsSync(join(modules, '@duckdb/node-api')) || !existsSync(join(modules, 'vega-datasets'))) {
  console.log(`@duckdb/node-api and vega-datasets are not in ${modules}`);
  process.exit(77);
}
const { DuckDBInstance } = createRequire(join(modules, 'x.js'))('@duckdb/node-api');
const data = join(modules, 'vega-datasets/data');
const folder = mkdtempSync(join(tmpdir(), 'rowvane-queries-'));
process.on('exit', () => rmSync(folder, { recursive: true, force: true }));

const tables = {
  flights: { source: 'flights-3m.parquet', numbers: ['delay', 'distance'] },
  airports: { source: 'airports.csv', numbers: ['latitude', 'longitude'] },
  weather: { source: 'seattle-weather.csv', numbers: ['precipitation', 'temp_max', 'temp_min', 'wind'] },
  strikes: { source: 'birdstrikes.csv', numbers: ['Cost Other', 'Cost Repair', 'Cost Total $', 'Speed IAS in knots'] },
};

// An empty number counts as 0 and an empty text as "" where values are compared; texts are compared without letter case.
const number = (name) => `coalesce("${name}", 0)`;
const text = (name) => `lower(coalesce("${name}", ''))`;
const where = (table, criteria, condition) => ({
  table,
  words: ['show', ...criteria.flatMap((criterion) => ['--where', criterion])],
  sql: `select id from ${table} where ${condition} order by id`,
});
const sorted = (table, keys, order, ...words) => ({
  table,
  words: ['show', '--sort', keys, ...words],
  sql: `select id from ${table} order by ${order}, id`,
});
const groupOf = (fields) => fields.map((field) => (field.startsWith('#') ? `"${field.slice(1)}"` : text(field))).join(', ');
const namesOf = (fields) => fields.map((field) => field.replace('#', '')).join(',');
const grouped = (command, table, fields, mode, condition) => ({
  table,
  words: [command, '--by', namesOf(fields), '--mode', String(mode)],
  sql: `select id from (select id, count(*) over g as size,
          row_number() over (partition by ${groupOf(fields)} order by id) as first,
          row_number() over (partition by ${groupOf(fields)} order by id desc) as last
        from ${table} window g as (partition by ${groupOf(fields)})) where ${condition} order by id`,
});
const quartiles = (table, field, mode, condition) => ({
  table,
  words: ['quartiles', '--by', field, '--mode', String(mode)],
  sql: `with s as (select quantile_cont("${field}", 0.25) as q1, quantile_cont("${field}", 0.5) as q2,
          quantile_cont("${field}", 0.75) as q3, avg("${field}") as mean from ${table})
        select id from ${table}, s where ${condition} order by id`,
});

const queries = [
  where('flights', ['delay:f:30'], `${number('delay')} > 30`),
  where('flights', ['delay:f:30', 'origin:c:s'], `${number('delay')} > 30 and starts_with(${text('origin')}, 's')`),
  where('flights', ['delay:g:-20'], `${number('delay')} < -20`),
  where('flights', ['delay:h:10 12'], `${number('delay')} between 10 and 12`),
  where('flights', ['distance:d:337'], `${number('distance')} = 337`),
  where('flights', ['distance:e:337', 'origin:d:SEA'], `${number('distance')} <> 337 and ${text('origin')} = 'sea'`),
  where('flights', ['destination:b:^S.*A$'], `regexp_matches(destination, '^S.*A$', 'i')`),
  where('flights', ['destination:b:[XYZ]'], `regexp_matches(destination, '[XYZ]', 'i')`),
  where('flights', ['date:b:-0[1-3]-1[05]'], `regexp_matches(date, '-0[1-3]-1[05]')`),
  where('flights', ['origin:j:sea las'], `starts_with(${text('origin')}, 'sea') or starts_with(${text('origin')}, 'las')`),
  where('flights', ['origin:i:s a'], `contains(${text('origin')}, 's') and contains(${text('origin')}, 'a')`),
  where('flights', ['origin:f:SEA'], `${text('origin')} > 'sea'`),
  where('flights', ['delay:a:=delay*2+distance/3>900'], `delay * 2 + distance / 3 > 900`),
  where('flights', ['delay:k: '], `delay is null`),
  where('airports', ['name:c:San'], `starts_with(${text('name')}, 'san')`),
  where('airports', ['name:i:municipal field'], `contains(${text('name')}, 'municipal') and contains(${text('name')}, 'field')`),
  where('airports', ['city:j:new los san'], `regexp_matches(city, '^(new|los|san)', 'i')`),
  where('airports', ['state:d:tx'], `${text('state')} = 'tx'`),
  where('airports', ['state:e:TX'], `${text('state')} <> 'tx'`),
  where('airports', ['state:h:CA FL'], `${text('state')} between 'ca' and 'fl'`),
  where('airports', ['latitude:f:60', 'longitude:g:-150'], `${number('latitude')} > 60 and ${number('longitude')} < -150`),
  where('airports', ['iata:b:^\\d'], `regexp_matches(iata, '^\\d')`),
  where('airports', ['name:b:(air|sea)(port|plane)'], `regexp_matches(name, '(air|sea)(port|plane)', 'i')`),
  where('airports', ['state:k: '], `state is null or trim(state) = ''`),
  where('weather', ['weather:d:snow'], `${text('weather')} = 'snow'`),
  where('weather', ['temp_max:f:30', 'wind:g:3'], `${number('temp_max')} > 30 and ${number('wind')} < 3`),
  where('weather', ['precipitation:d:0'], `${number('precipitation')} = 0`),
  where('weather', ['temp_min:h:-2.8 0'], `${number('temp_min')} between -2.8 and 0`),
  where('weather', ['date:c:2013-07'], `starts_with(date, '2013-07')`),
  where('strikes', ['Wildlife Species:i:gull'], `contains(${text('Wildlife Species')}, 'gull')`),
  where('strikes', ['Cost Total $:f:100000'], `${number('Cost Total $')} > 100000`),
  where('strikes', ['Speed IAS in knots:k: '], `"Speed IAS in knots" is null`),
  where('strikes', ['Origin State:c:new', 'Wildlife Size:d:large'],
    `starts_with(${text('Origin State')}, 'new') and ${text('Wildlife Size')} = 'large'`),
  where('strikes', ['Airport Name:b:INTL?$'], `regexp_matches("Airport Name", 'INTL?$', 'i')`),
  sorted('flights', 'delay', 'delay nulls last'),
  sorted('flights', '-distance', 'distance desc nulls first'),
  sorted('flights', 'origin,destination,-distance', 'origin, destination, distance desc', '--collation', 'neutral'),
  sorted('airports', 'state,city,name', 'state nulls last, city nulls last, name nulls last', '--collation', 'neutral'),
  sorted('airports', '-state,latitude', 'state desc nulls first, latitude', '--collation', 'neutral'),
  sorted('weather', 'weather,-temp_max', 'weather, temp_max desc'),
  sorted('strikes', '-Cost Total $,Flight Date', '"Cost Total $" desc nulls first, "Flight Date" nulls last'),
  sorted('strikes', 'Speed IAS in knots', '"Speed IAS in knots" nulls last'),
  grouped('duplicates', 'flights', ['origin', 'destination', 'date'], 0, 'size > 1'),
  grouped('duplicates', 'flights', ['#delay', 'date'], 1, 'size > 1 and first = 1'),
  grouped('duplicates', 'airports', ['city', 'state'], 2, 'size > 1 and last = 1'),
  grouped('duplicates', 'airports', ['name'], 3, 'size > 1 and first > 1'),
  grouped('duplicates', 'strikes', ['Airport Name', 'Flight Date'], 4, 'size > 1 and last > 1'),
  grouped('duplicates', 'weather', ['#temp_max', '#temp_min'], 0, 'size > 1'),
  grouped('unique', 'flights', ['origin', 'destination'], 0, 'first = 1'),
  grouped('unique', 'strikes', ['Wildlife Species'], 1, 'last = 1'),
  grouped('unique', 'strikes', ['#Speed IAS in knots'], 0, 'first = 1'),
  quartiles('flights', 'delay', 1, 'delay < q1'),
  quartiles('flights', 'delay', 6, 'delay >= q1 and delay < q3'),
  quartiles('flights', 'distance', 32, 'distance >= mean'),
  quartiles('weather', 'wind', 8, 'wind >= q3'),
  quartiles('strikes', 'Cost Total $', 16, '"Cost Total $" < mean'),
  quartiles('strikes', 'Speed IAS in knots', 9, '"Speed IAS in knots" < q1 or "Speed IAS in knots" >= q3'),
];

const connection = await (await DuckDBInstance.create(':memory:')).connect();

// The table with the number of each record, for both.
async function load(name, { source, numbers }) {
  const path = join(data, source);
  const read = source.endsWith('.parquet') ? `read_parquet('${path}')` : `read_csv('${path}', all_varchar = true)`;
  const csv = join(folder, `${name}.csv`);
  await connection.run(`copy (select row_number() over () as id, * from ${read}) to '${csv}' (format csv, header)`);
  const types = ['id', ...numbers].map((field) => `try_cast("${field}" as double) as "${field}"`).join(', ');
  await connection.run(`create table ${name} as select * replace (${types}) from read_csv('${csv}', all_varchar = true)`);
  run(['import', join(folder, `${name}.rvb`), csv]);
}

function run(words) {
  const result = spawnSync(rvb, ['--quiet', ...words], { encoding: 'utf8', maxBuffer: 1 << 28 });
  if (result.status !== 0) throw new Error(`rvb ${words.join(' ')}: ${result.stderr || result.error}`);
  return result.stdout;
}

function idsOfRvb({ table, words: [command, ...words] }) {
  const printed = run([command, join(folder, `${table}.rvb`), ...words, '--fields', 'id', '--format', 'csv']);
  return printed.split(/\r?\n/).slice(1).filter(Boolean).map(Number);
}

async function idsOfDuckdb({ sql }) {
  const result = await connection.runAndReadAll(sql);
  return result.getColumnsJson()[0]?.map(Number) ?? [];
}

for (const [name, table] of Object.entries(tables)) await load(name, table);
let differing = 0;
for (const query of queries) {
  const ours = idsOfRvb(query);
  const theirs = await idsOfDuckdb(query);
  const place = ours.findIndex((id, i) => id !== theirs[i]);
  if (ours.length === theirs.length && place < 0) continue;
  ++differing;
  console.log(`${query.table} ${query.words.join(' ')}: ${ours.length} records, DuckDB ${theirs.length};`,
    `place ${place}: ${ours[place]}, DuckDB ${theirs[place]}`);
}
console.log(`${queries.length} queries, ${differing} with different answers`);
process.exit(differing > 0 ? 1 : 0);
